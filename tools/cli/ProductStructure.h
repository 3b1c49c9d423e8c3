#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "zorvex_api/Object.h"

namespace zorvex_cli
{

/// What one view of a structure is called.
struct PartName
{
    std::string number;    ///< the product's or catalogue's id
    std::string revision;  ///< may be empty
    std::string name;
};

/// All placements of one part in another.
struct PartUse
{
    zorvex_api::Object* view = nullptr;  ///< null when the part isn't loaded
    std::string reference;               ///< the text of the reference to it
    double quantity = 0.0;
};

/// The product structure of a document: views, and the instances that place one in another.
///
/// Reads the document when asked and keeps what it has found; the document must stay as it is.
class ProductStructure
{
public:
    explicit ProductStructure(zorvex_api::Object& document) : m_document(document) {}

    /// The views that no instance places, in the order of the document.
    std::vector<zorvex_api::Object*> Roots();

    /// What `view` is made of, in the order of its instances.
    const std::vector<PartUse>& Uses(zorvex_api::Object& view);

    /// The name of `view`, with what its revision and its master say.
    PartName Name(const zorvex_api::Object& view) const;

private:
    zorvex_api::Object& m_document;
    std::unordered_map<zorvex_api::Object*, std::vector<PartUse>> m_uses;
};

}  // namespace zorvex_cli
