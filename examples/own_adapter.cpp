// Brings the library a format of the application's own: the geometry file that a Representation
// names is loaded with the document, and the application gets its own mesh back.
#include <zorvex60/zorvex60.h>

#include <algorithm>
#include <cmath>

#include "Example.h"
#include "stl_adapter/StlAdapter.h"

namespace
{

using example::Require;
using example::StlMesh;
using example::Text;
using zorvex_api::Array;
using zorvex_api::BoxBound;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::Object;

void Work(const std::string& data, const std::string&)
{
    Object* document = nullptr;
    const Configuration options;
    const zorvex_api::Result result =
        zorvex_api::LoadDocument((data + "/bracket-assembly.zorvex").c_str(), options, &document);
    Require(result, "loading");
    Require(result.NumberOfErrors() == 0, "no adapter is missing");

    auto* representation = dynamic_cast<zorvex60::Representation*>(document->ResolveId(u"id86"));
    Require(representation != nullptr, "id86 is a representation");
    Array<Handle> handles;
    Require(representation->GetExternalRef(handles), "reading the reference");
    Require(handles.GetSize() == 1, "the file was loaded");
    Require(handles[0].GetFormat() == u"STL", "the handle has the format");
    Require(!handles[0].IsObject(), "the library doesn't look into it");

    // The document keeps the mesh and has the adapter destroy it in the end.
    const auto* mesh = static_cast<const StlMesh*>(handles[0].GetData());
    std::cout << Text(representation->GetExternalRefURI()) << ": " << mesh->vertices.size() / 3
              << " triangles\n";
    const StlMesh::Point low = mesh->Low();
    const StlMesh::Point high = mesh->High();

    // The document states a bounding box: its centre and half widths.
    Array<double> box;
    Require(representation->GetBound(0)->GetValues(box), "reading the bound");
    Require(box.GetSize() == 6, "the bound is a box");
    for (int i = 0; i < 3; ++i)
    {
        const size_t axis = static_cast<size_t>(i);
        const double error = std::max(std::abs(box[i] - box[i + 3] - low[axis]),
                                      std::abs(box[i] + box[i + 3] - high[axis]));
        Require(error < 1e-12, "the bound fits the mesh");
    }
    std::cout << "its bounding box is the one in the document\n";
    delete document;
}

}  // namespace

int main(int argc, char** argv)
{
    return example::Run(argc, argv, &Work);
}
