// Loads a document with a second one that it refers to, reads and edits it through the typed
// classes, saves it and loads it again.
#include <zorvex60/zorvex60.h>

#include "Example.h"

namespace
{

using example::Require;
using example::Text;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::Vector;

zorvex60::Document* Load(const std::string& path)
{
    Object* object = nullptr;
    const Configuration options;
    Require(zorvex_api::LoadDocument(path.c_str(), options, &object), "loading");
    auto* document = dynamic_cast<zorvex60::Document*>(object);
    Require(document != nullptr, "the root is a Document");
    return document;
}

/// The view that an instance places. A reference was resolved when the document was loaded, into
/// the other document too.
zorvex60::ProductRevisionView* PlacedView(zorvex60::Instance& instance)
{
    Handle handle;
    instance.GetPartURI(handle);
    return dynamic_cast<zorvex60::ProductRevisionView*>(handle.GetObject());
}

void PrintInstances(zorvex60::InstanceGraph& graph)
{
    for (int i = 0; i < graph.NumberOfInstances(); ++i)
    {
        zorvex60::Instance* instance = graph.GetInstance(i);
        zorvex60::ProductRevisionView* view = PlacedView(*instance);
        Require(view != nullptr, "each instance places a view");
        std::cout << "  " << Text(instance->GetName()) << ": " << Text(view->GetName()) << '\n';
    }
}

void Edit(zorvex60::Document& document)
{
    // Found by id, then through its class: two washers under each foundation bolt.
    auto* washers = dynamic_cast<zorvex60::Instance*>(document.ResolveId(u"id47"));
    Require(washers != nullptr, "id47 is an instance");
    Require(washers->GetQuantity() == 4.0, "there are four washers");
    Require(washers->SetQuantity(8.0), "setting the quantity");

    auto* revision = dynamic_cast<zorvex60::ProductRevision*>(document.ResolveId(u"id21"));
    Require(revision != nullptr, "id21 is a revision");
    Require(revision->SetRevision(u"C"), "setting the revision");

    // A part of the document's tree: the tree owns it, and it gets an id of its own.
    auto* plate = dynamic_cast<zorvex60::Product*>(document.ResolveId(u"id22"));
    Require(plate != nullptr, "id22 is a product");
    auto* data = new zorvex60::UserData(plate);
    Require(data->SetType(u"Kontrola"), "setting the type");
    zorvex60::UserValue* value = data->AddUserValue();
    Require(value->SetTitle(u"Rovinnost v mm"), "setting the title");
    Require(value->SetValue(u"0,05"), "setting the value");
}

void Work(const std::string& data, const std::string& out)
{
    zorvex60::Document* document = Load(data + "/bracket-assembly.zorvex");
    std::cout << "By " << Text(document->GetAuthor()) << ":\n";
    PrintInstances(*document->GetProductDef(0)->GetInstanceGraph(0));

    Edit(*document);
    const std::string path = out + "/load_edit_save.zorvex";
    const Configuration options;
    Require(document->Save(path.c_str(), options), "saving");
    delete document;  // and with it the document that its references brought in

    document = Load(path);
    auto* washers = dynamic_cast<zorvex60::Instance*>(document->ResolveId(u"id47"));
    Require(washers && washers->GetQuantity() == 8.0, "the quantity was saved");
    auto* plate = dynamic_cast<zorvex60::Product*>(document->ResolveId(u"id22"));
    Require(plate && plate->NumberOfAttributes() == 1, "the user data was saved");
    Require(washers && PlacedView(*washers) != nullptr, "the other document is still found");
    std::cout << "Saved as " << path << '\n';
    delete document;
}

}  // namespace

int main(int argc, char** argv)
{
    return example::Run(argc, argv, &Work);
}
