// Builds a product structure by hand: a pallet cage of one frame and four feet, with masters,
// revisions, views and instances, and saves it.
#include <zorvex60/zorvex60.h>

#include "Example.h"

namespace
{

using example::Require;
using example::Text;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::String;
using zorvex_api::Transf;
using zorvex_api::Vector;

/// A master, a revision and a view of one part, all in `graph`, which owns them.
zorvex60::ProductRevisionView* AddPart(zorvex60::InstanceGraph& graph, const char16_t* number,
                                       const char16_t* name)
{
    auto* product = new zorvex60::Product(&graph);
    Require(product->SetProductId(number), "setting the number");
    Require(product->SetName(name), "setting the name");

    auto* revision = new zorvex60::ProductRevision(&graph);
    Require(revision->SetRevision(u"A"), "setting the revision");
    Require(revision->SetMasterURI(Handle(product)), "setting the master");

    auto* view = new zorvex60::ProductRevisionView(&graph);
    Require(view->SetName(name), "setting the name");
    Require(view->SetRevisionURI(Handle(revision)), "setting the revision");
    return view;
}

/// Places `part` in `assembly`, moved by `offset`.
void Place(zorvex60::InstanceGraph& graph, zorvex60::ProductRevisionView& part,
           zorvex60::ProductRevisionView& assembly, const Vector& offset)
{
    auto* instance = new zorvex60::ProductInstance(&graph);
    Require(instance->SetPartURI(Handle(&part)), "setting the part");
    Require(assembly.AddInstanceRef(instance) == 1, "adding the instance");

    zorvex60::Transform* transform = instance->AddTransform();
    Require(transform->SetType(zorvex60::eTransformationType(u"translate")), "setting the type");
    Require(transform->SetContent(Transf(offset)), "setting the transform");
}

void Work(const std::string&, const std::string& out)
{
    auto* document = new zorvex60::Document;  // a root: ours until we delete it
    Require(document->SetAuthor(u"Zoë Müller"), "setting the author");
    zorvex60::InstanceGraph* graph = document->AddProductDef()->AddInstanceGraph();

    zorvex60::ProductRevisionView* cage = AddPart(*graph, u"CAG-200", u"Gitterbox");
    zorvex60::ProductRevisionView* frame = AddPart(*graph, u"FRM-210", u"Rahmen");
    zorvex60::ProductRevisionView* foot = AddPart(*graph, u"FOT-220", u"Fuß");
    Require(graph->AddRootRef(cage) == 1, "adding the root");

    Place(*graph, *frame, *cage, Vector(0.0, 0.0, 0.1));
    for (const double x : {0.0, 1.2})
    {
        for (const double y : {0.0, 0.8})
        {
            Place(*graph, *foot, *cage, Vector(x, y, 0.0));
        }
    }
    Require(cage->NumberOfInstanceRefs() == 5, "the cage has five instances");
    Require(graph->NumberOfStructures() == 3, "there are three masters");

    const std::string path = out + "/build_structure.zorvex";
    const Configuration options;
    Require(document->Save(path.c_str(), options), "saving");
    delete document;

    Object* loaded = nullptr;
    Require(zorvex_api::LoadDocument(path.c_str(), options, &loaded), "loading");
    String text;
    Require(loaded->GetXML(text, nullptr), "getting the text");
    Require(text.Find(u"<ProductInstance") >= 0, "the instances keep their class");
    std::cout << Text(text) << '\n';
    delete loaded;
}

}  // namespace

int main(int argc, char** argv)
{
    return example::Run(argc, argv, &Work);
}
