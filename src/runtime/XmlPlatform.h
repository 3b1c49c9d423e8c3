#pragma once

namespace zorvex_api
{

/// The XML libraries' common start and end. Both do nothing when called twice.
class XmlPlatform
{
public:
    static bool IsUp();
    /// False when a library doesn't start.
    static bool Start();
    static void End();

    /// Registers a release of what was made with the libraries: it runs before each end. Called
    /// while the library is loaded or from one thread.
    static void BeforeEnd(void (*hook)());
};

}  // namespace zorvex_api
