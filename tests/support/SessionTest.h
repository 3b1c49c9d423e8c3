#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/CountingAllocator.h"
#include "support/Printers.h"
#include "support/ScratchFolder.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Object.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/Session.h"
#include "zorvex_api/String.h"

namespace zorvex_test
{

/// A session for each test, on memory hooks that count: what a test or the library leaves behind
/// fails the test. A derived fixture names its options in the constructor.
class SessionTest : public testing::Test
{
protected:
    explicit SessionTest(std::vector<std::string> options = {});
    /// Checks for leaks, when the members of derived fixtures are gone.
    ~SessionTest() override;

    void SetUp() override;
    void TearDown() override;

    CountingAllocator& Hooks() { return m_hooks; }

private:
    std::vector<std::string> m_options;
    CountingAllocator m_hooks;
};

/// What a load gave. Owns the roots.
class Loaded
{
public:
    Loaded() = default;
    Loaded(Loaded&& other) noexcept
        : result(std::move(other.result)), roots(std::exchange(other.roots, {}))
    {
    }
    Loaded& operator=(Loaded&&) = delete;
    ~Loaded();

    const zorvex_api::Result& GetResult() const { return result; }
    std::vector<std::string> Messages() const { return zorvex_test::Messages(result); }
    /// The only root; fails the test when there is not exactly one.
    zorvex_api::Object* Root() const;
    const std::vector<zorvex_api::Object*>& Roots() const { return roots; }

    zorvex_api::Result result;
    std::vector<zorvex_api::Object*> roots;
};

/// Options from pairs of path and value.
using Options = std::initializer_list<std::pair<const char*, const char*>>;
std::unique_ptr<zorvex_api::Configuration> MakeOptions(Options options);

/// Loads from a URI or a path, or the text of a document.
Loaded LoadFrom(const zorvex_api::String& uri, Options options = {});
inline Loaded LoadText(std::string_view document, Options options = {})
{
    return LoadFrom(zorvex_api::String(document.data(), static_cast<int>(document.size())),
                    options);
}

/// A document in the main namespace around `content`: a root element "ZORVEX" with the attributes
/// that a saved document has.
std::string WrapDocument(std::string_view content);

}  // namespace zorvex_test
