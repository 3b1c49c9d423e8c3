// What the examples share: the session, the command line, and a way to stop when a step fails.
#pragma once

#include <zorvex_api/zorvex_api.h>

#include <iostream>
#include <stdexcept>
#include <string>

namespace example
{

/// The library's session. An application starts it once, before anything else.
class Session
{
public:
    Session()
    {
        if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0)
        {
            throw std::runtime_error("the session could not be started");
        }
    }
    ~Session() { zorvex_api::Terminate(); }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

/// The text as UTF-8. The cast gives null for an empty String.
inline std::string Text(const zorvex_api::String& text)
{
    const char* bytes = text;
    return bytes ? bytes : "";
}

/// Throws with the messages of `result` when it isn't Ok; warnings are printed.
inline void Require(const zorvex_api::Result& result, const char* what)
{
    if (!result.Ok())
    {
        throw std::runtime_error(std::string(what) + ": " + Text(result.GetMessage()));
    }
    for (int i = 0; i < result.NumberOfErrors(); ++i)
    {
        std::cout << "  note: " << Text(result.GetError(i)->GetMessage()) << '\n';
    }
}

inline void Require(bool condition, const char* what)
{
    if (!condition)
    {
        throw std::runtime_error(what);
    }
}

/// Runs `work` with the folder of the example documents and a folder to write to.
inline int Run(int argc, char** argv, void (*work)(const std::string& data, const std::string& out))
{
    if (argc != 3)
    {
        std::cerr << "usage: " << argv[0] << " DATA-FOLDER OUTPUT-FOLDER\n";
        return 2;
    }
    try
    {
        const Session session;
        work(argv[1], argv[2]);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "failed: " << error.what() << '\n';
    }
    catch (const zorvex_api::Exception& error)
    {
        std::cerr << "failed: " << error.GetCode() << ' ' << Text(error.GetMessage()) << '\n';
    }
    return 1;
}

}  // namespace example
