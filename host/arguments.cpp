#include "host/arguments.h"

struct ArgumentFlag {
    const wchar_t* word;
    bool HostArguments::*value;
};

static const ArgumentFlag flags[] = {
    {L"-h", &HostArguments::help},
    {L"--help", &HostArguments::help},
    {L"--overwrite", &HostArguments::overwrite},
    {L"--flatten", &HostArguments::flatten},
    {L"--window", &HostArguments::window},
};

static void takePhoto(const std::wstring& name, HostArguments* result)
{
    if (name.empty())
        result->problem = L"A file name is empty.";
    else
        result->photos.push_back(name);
}

static void takeOutput(const std::wstring& option, const std::wstring& name, HostArguments* result)
{
    if (name.empty())
        result->problem = option + L" needs a file name.";
    else if (!result->output.empty())
        result->problem = L"More than one file to write is named: " + name;
    else
        result->output = name;
}

static void takeFlag(const std::wstring& word, HostArguments* result)
{
    for (const ArgumentFlag& flag : flags) {
        if (word != flag.word) continue;
        result->*flag.value = true;
        return;
    }
    result->problem = L"Unknown option: " + word;
}

static std::wstring problemTogether(const HostArguments& result)
{
    if (result.photos.empty() && !result.help && (result.overwrite || !result.output.empty()))
        return L"No photo is named.";
    if (result.window && (result.overwrite || !result.output.empty()))
        return L"With --window the names of results are asked for.";
    if (result.photos.size() > 1 && !result.output.empty())
        return L"There are several photos, but one file to write: " + result.output;
    return L"";
}

HostArguments parseArguments(const std::vector<std::wstring>& arguments)
{
    HostArguments result;
    bool onlyNames = false;
    for (size_t i = 0; i < arguments.size() && result.problem.empty(); ++i) {
        const std::wstring& word = arguments[i];
        if (onlyNames || word.empty() || word[0] != L'-' || word == L"-") {
            takePhoto(word, &result);
        } else if (word == L"--") {
            onlyNames = true;
        } else if (word == L"-o" || word == L"--output") {
            takeOutput(word, i + 1 < arguments.size() ? arguments[i + 1] : L"", &result);
            ++i;
        } else {
            takeFlag(word, &result);
        }
    }
    if (result.problem.empty()) result.problem = problemTogether(result);
    return result;
}
