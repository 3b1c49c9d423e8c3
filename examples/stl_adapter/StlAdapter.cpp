#include "StlAdapter.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <locale>
#include <memory>
#include <sstream>
#include <string>

namespace example
{
namespace
{

using zorvex_api::Array;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::PluginDescriptor;
using zorvex_api::PluginProcessData;
using zorvex_api::Result;
using zorvex_api::Stream;

constexpr int kFailed = 2;
constexpr unsigned int kRead = 1;
constexpr unsigned int kWrite = 2;

PluginDescriptor* s_descriptor = nullptr;  // made by the library, which owns it

// The adapter tells the library its existence by this object alone.
const zorvex_api::LinkNode s_node(&StlAdapter::Register, zorvex_api::LinkNode::kPlugin);

/// The pointer in a slot of an operation.
template <class T>
T* Slot(const PluginProcessData& data, int slot)
{
    void* value = nullptr;
    data.Get(slot, value);
    return static_cast<T*>(value);
}

void Fail(const PluginProcessData& data, const char* message)
{
    if (Result* result = Slot<Result>(data, 0))
    {
        result->AddError(kFailed, message);
    }
}

std::string ReadAll(Stream& stream)
{
    constexpr int kBlock = 16 * 1024;

    std::string text;
    std::string block(kBlock, '\0');
    int count = 0;
    while ((count = stream.Read(&block[0], kBlock, 1, 0)) > 0)
    {
        text.append(block, 0, static_cast<size_t>(count));
    }
    return text;
}

/// Null when the text isn't a mesh.
std::unique_ptr<StlMesh> Parse(const std::string& text)
{
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    std::string word;
    if (!(in >> word) || word != "solid")
    {
        return nullptr;
    }
    auto mesh = std::make_unique<StlMesh>();
    while (in >> word)
    {
        if (word == "vertex")
        {
            StlMesh::Point point{};
            if (!(in >> point[0] >> point[1] >> point[2]))
            {
                return nullptr;
            }
            mesh->vertices.push_back(point);
        }
    }
    const bool isWhole = !mesh->vertices.empty() && mesh->vertices.size() % 3 == 0;
    return isWhole ? std::move(mesh) : nullptr;
}

std::string Format(const StlMesh& mesh)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "solid\n";
    for (size_t i = 0; i + 2 < mesh.vertices.size(); i += 3)
    {
        out << "facet normal 0 0 0\nouter loop\n";
        for (size_t corner = 0; corner < 3; ++corner)
        {
            const StlMesh::Point& point = mesh.vertices[i + corner];
            out << "vertex " << point[0] << ' ' << point[1] << ' ' << point[2] << '\n';
        }
        out << "endloop\nendfacet\n";
    }
    out << "endsolid\n";
    return out.str();
}

void SetProperties(PluginDescriptor*, Configuration* properties)
{
    properties->Set(u"FORMAT", u"STL");
    properties->Set(u"DESCRIPTION", u"Tessellated geometry in text form");
    properties->Set(u"FILE_EXTENSIONS", u"stl");
    properties->Set(u"THREADING", u"MULTIPLE");  // an instance shares nothing with others
}

void* MakeInstance()
{
    // The library takes the pointer for one to an Adapter.
    return static_cast<zorvex_api::Adapter*>(new StlAdapter);
}

/// A mesh has no parts to pick from: every locator stands for the whole of it.
void Locate(const PluginProcessData& data)
{
    const auto* candidates = Slot<Array<Handle>>(data, 10);
    auto* found = Slot<Array<Handle>>(data, 11);
    if (candidates && found)
    {
        for (int i = 0; i < candidates->GetSize(); ++i)
        {
            found->Add((*candidates)[i]);
        }
    }
}

void Destroy(const PluginProcessData& data)
{
    if (const auto* handles = Slot<Array<Handle>>(data, 10))
    {
        for (int i = 0; i < handles->GetSize(); ++i)
        {
            delete static_cast<StlMesh*>((*handles)[i].GetData());
        }
    }
}

}  // namespace

StlMesh::Point StlMesh::Low() const
{
    Point low;
    low.fill(std::numeric_limits<double>::infinity());
    for (const Point& vertex : vertices)
    {
        for (size_t i = 0; i < 3; ++i)
        {
            low[i] = std::min(low[i], vertex[i]);
        }
    }
    return low;
}

StlMesh::Point StlMesh::High() const
{
    Point high;
    high.fill(-std::numeric_limits<double>::infinity());
    for (const Point& vertex : vertices)
    {
        for (size_t i = 0; i < 3; ++i)
        {
            high[i] = std::max(high[i], vertex[i]);
        }
    }
    return high;
}

StlAdapter::~StlAdapter()
{
    if (s_descriptor)
    {
        s_descriptor->RemoveInstance(this);
    }
}

PluginDescriptor* StlAdapter::GetPluginDescriptor()
{
    return s_descriptor;
}

int StlAdapter::Register(void* descriptor)
{
    s_descriptor = static_cast<PluginDescriptor*>(descriptor);
    s_descriptor->SetType(1);
    s_descriptor->SetName(u"STL");
    s_descriptor->SetBase(Adapter::GetStaticPluginDescriptor());
    s_descriptor->SetInstanceFunction(&MakeInstance);
    s_descriptor->SetPropertiesFunction(&SetProperties);
    return 1;
}

void StlAdapter::Process(PluginProcessData* data)
{
    switch (data->m_operation)
    {
        case zorvex_api::ZORVEX_OP_ADAPTER_IMPORT:
        case zorvex_api::ZORVEX_OP_ADAPTER_LOAD:
            return Load(*data);
        case zorvex_api::ZORVEX_OP_ADAPTER_EXPORT:
        case zorvex_api::ZORVEX_OP_ADAPTER_SAVE:
            return Save(*data);
        case zorvex_api::ZORVEX_OP_ADAPTER_LOCATE:
            return Locate(*data);
        case zorvex_api::ZORVEX_OP_ADAPTER_DESTROY:
            return Destroy(*data);
        case zorvex_api::ZORVEX_OP_ADAPTER_RESET:
        case zorvex_api::ZORVEX_OP_ADAPTER_INITALISE:
        case zorvex_api::ZORVEX_OP_ADAPTER_TERMINATE:
            return;
        default:
            return Adapter::Process(data);
    }
}

Stream* StlAdapter::OpenStream(PluginProcessData& data, unsigned int mode)
{
    Stream* stream = nullptr;
    if (!GetPrevious())
    {
        return nullptr;
    }
    unsigned int openMode = zorvex_api::ZORVEX_ADAPTER_GET_MODE_STREAM | mode;
    PluginProcessData request;
    request.m_operation = zorvex_api::ZORVEX_OP_ADAPTER_GET;
    for (const int slot : {0, 1, 10, -2})
    {
        request.Set(slot, Slot<void>(data, slot));
    }
    request.Set(5, &openMode);
    request.Set(7, &stream);
    GetPrevious()->Process(&request);
    return stream;
}

void StlAdapter::Load(PluginProcessData& data)
{
    const std::unique_ptr<Stream> stream(OpenStream(data, kRead));
    if (!stream)
    {
        return;  // the resolver has said why
    }
    std::unique_ptr<StlMesh> mesh = Parse(ReadAll(*stream));
    auto* handles = Slot<Array<Handle>>(data, 10);
    if (!mesh || !handles)
    {
        Fail(data, "STL: the file is no mesh in text form");
        return;
    }
    handles->Add(Handle(mesh.release(), u"STL"));  // Destroy deletes it
}

void StlAdapter::Save(PluginProcessData& data)
{
    const auto* handles = Slot<Array<Handle>>(data, 10);
    if (!handles || handles->GetSize() == 0)
    {
        return;
    }
    const std::unique_ptr<Stream> stream(OpenStream(data, kWrite));
    if (!stream)
    {
        return;
    }
    const std::string text = Format(*static_cast<const StlMesh*>((*handles)[0].GetData()));
    const int size = static_cast<int>(text.size());
    if (!stream->Write(text.data(), size, 1, 0) || !stream->Close())
    {
        Fail(data, "STL: the file could not be written");
    }
}

}  // namespace example
