#include "support/SessionTest.h"

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Load.h"

namespace zorvex_test
{

using zorvex_api::Allocator;
using zorvex_api::Array;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::String;

SessionTest::SessionTest(std::vector<std::string> options) : m_options(std::move(options)) {}

SessionTest::~SessionTest()
{
    Allocator::RegisterHandlers(nullptr, nullptr);
    EXPECT_EQ(0, m_hooks.Live()) << "blocks left behind by the session";
}

void SessionTest::SetUp()
{
    std::vector<const char*> options;
    for (const std::string& option : m_options)
    {
        options.push_back(option.c_str());
    }
    ASSERT_EQ(0, zorvex_api::Initialise(0, nullptr, static_cast<int>(options.size()),
                                        options.data(), &m_hooks, &m_hooks));
}

void SessionTest::TearDown()
{
    EXPECT_EQ(0, zorvex_api::Terminate());
}

Loaded::~Loaded()
{
    for (Object* root : roots)
    {
        delete root;
    }
}

Object* Loaded::Root() const
{
    EXPECT_EQ(1u, roots.size()) << testing::PrintToString(result);
    return roots.empty() ? nullptr : roots[0];
}

std::unique_ptr<Configuration> MakeOptions(Options options)
{
    auto configuration = std::make_unique<Configuration>();
    for (const auto& [path, value] : options)
    {
        configuration->Set(path, value);
    }
    return configuration;
}

Loaded LoadFrom(const String& uri, Options options)
{
    const std::unique_ptr<Configuration> configuration = MakeOptions(options);
    Array<Handle> handles;
    Loaded loaded;
    loaded.result = zorvex_api::Load(uri, handles, configuration.get());
    for (const Handle& handle : handles)
    {
        if (handle.GetObject() != nullptr)
        {
            loaded.roots.push_back(handle.GetObject());
        }
    }
    return loaded;
}

std::string WrapDocument(std::string_view content)
{
    std::string text =
        "<ZORVEX xmlns=\"http://www.zorvex.org/Schemas/ZORVEXSchema\" schemaVersion=\"6\" "
        "author=\"test\" date=\"2024-10-16\" time=\"17:02:41\">";
    return text.append(content).append("</ZORVEX>");
}

}  // namespace zorvex_test
