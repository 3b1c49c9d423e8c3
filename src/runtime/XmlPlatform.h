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
};

}  // namespace zorvex_api
