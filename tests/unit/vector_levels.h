// Tests that run once for each level of vector code; levels that this processor lacks are reported as skipped.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "image/pixels/vector_level.h"

class VectorLevels : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        if (!forceVectorLevel((VectorLevel)GetParam()))
            GTEST_SKIP() << "this processor has no " << vectorLevelName((VectorLevel)GetParam());
    }
    void TearDown() override { forceVectorLevel(before); }

private:
    const VectorLevel before = vectorLevel();
};

inline std::string levelOfTest(const testing::TestParamInfo<int>& info)
{
    return vectorLevelName((VectorLevel)info.param);
}

// A suite of tests written with TEST_P(Suite, ...), where Suite is a class derived from VectorLevels.
#define FOR_EACH_VECTOR_LEVEL(Suite)                                                                                   \
    INSTANTIATE_TEST_SUITE_P(Level, Suite, testing::Range(0, (int)VECTOR_LEVEL_COUNT), levelOfTest)

// For a loop over the levels that there are, where one expected result serves all: the level ends with the value.
class LevelInUse {
public:
    explicit LevelInUse(int level) : present(forceVectorLevel((VectorLevel)level)) {}
    ~LevelInUse() { forceVectorLevel(before); }
    LevelInUse(const LevelInUse&) = delete;
    LevelInUse& operator=(const LevelInUse&) = delete;

private:
    const VectorLevel before = vectorLevel();

public:
    const bool present;
};
