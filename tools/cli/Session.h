#pragma once

#include <string>
#include <vector>

namespace zorvex_cli
{

/// The library's session, for as long as this lives.
class Session
{
public:
    /// Starts the session with further libraries of classes and plug-ins. Failures are reported.
    explicit Session(const std::vector<std::string>& libraries);
    ~Session();

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Whether the session started whole.
    bool IsGood() const { return m_code == 0; }

private:
    int m_code;  // what Initialise gave
};

}  // namespace zorvex_cli
