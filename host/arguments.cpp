#include "host/arguments.h"

HostArguments parseArguments(const std::vector<std::wstring>& arguments)
{
    HostArguments result;
    bool onlyNames = false;
    for (size_t i = 0; i < arguments.size() && result.problem.empty(); ++i) {
        const std::wstring& word = arguments[i];
        if (onlyNames || word.empty() || word[0] != L'-' || word == L"-") {
            if (word.empty())
                result.problem = L"A file name is empty.";
            else
                result.photos.push_back(word);
        } else if (word == L"--") {
            onlyNames = true;
        } else if (word == L"-h" || word == L"--help") {
            result.help = true;
        } else if (word == L"--overwrite") {
            result.overwrite = true;
        } else if (word == L"--flatten") {
            result.flatten = true;
        } else if (word == L"-o" || word == L"--output") {
            if (i + 1 == arguments.size() || arguments[i + 1].empty())
                result.problem = word + L" needs a file name.";
            else if (!result.output.empty())
                result.problem = L"More than one file to write is named: " + arguments[i + 1];
            else
                result.output = arguments[++i];
        } else {
            result.problem = L"Unknown option: " + word;
        }
    }
    if (result.problem.empty() && result.photos.empty() && !result.help && (result.overwrite || !result.output.empty()))
        result.problem = L"No photo is named.";
    if (result.problem.empty() && result.photos.size() > 1 && !result.output.empty())
        result.problem = L"There are several photos, but one file to write: " + result.output;
    return result;
}
