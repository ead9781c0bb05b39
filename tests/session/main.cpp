#include <gtest/gtest.h>

// A fatal failure ends the whole test, also out of the helpers that it calls: what follows would drive
// windows that are not there.
struct EndTestOnFatalFailure : testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult& result) override
    {
        if (result.type() == testing::TestPartResult::kFatalFailure) throw testing::AssertionException(result);
    }
};

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new EndTestOnFatalFailure);
    return RUN_ALL_TESTS();
}
