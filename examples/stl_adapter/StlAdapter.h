// An adapter for a format of the application's own: tessellated geometry in text form (STL).
//
// The library knows nothing of the format. When it follows the `location` of a `Representation`
// with the format "STL", it finds this adapter by its name, asks it to load, and keeps what comes
// back as opaque handles beside the reference.
#pragma once

#include <zorvex_api/zorvex_api.h>

#include <array>
#include <vector>

namespace example
{

/// What a handle of the format "STL" points at.
struct StlMesh
{
    using Point = std::array<double, 3>;

    std::vector<Point> vertices;  // three for each triangle

    Point Low() const;
    Point High() const;
};

class StlAdapter : public zorvex_api::Adapter
{
public:
    StlAdapter() = default;
    ~StlAdapter() override;

    zorvex_api::PluginDescriptor* GetPluginDescriptor() override;
    void Process(zorvex_api::PluginProcessData* data) override;

    /// The initialiser that the adapter's LinkNode carries.
    static int Register(void* descriptor);

private:
    void Load(zorvex_api::PluginProcessData& data);
    void Save(zorvex_api::PluginProcessData& data);
    zorvex_api::Stream* OpenStream(zorvex_api::PluginProcessData& data, unsigned int mode);
};

}  // namespace example
