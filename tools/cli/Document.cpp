#include "Document.h"

#include <algorithm>

#include "Progress.h"
#include "Report.h"
#include "Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/Load.h"

using zorvex_api::Array;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::Result;

namespace zorvex_cli
{

Document::Document(const Options& options) : m_resolverRef(&m_resolver)
{
    options.Fill(m_configuration);
}

Document::~Document()
{
    for (Object* root : m_roots)
    {
        delete root;
    }
}

bool Document::Load(const std::string& uri)
{
    Array<Handle> handles;
    {
        const Progress progress("Loading " + uri);
        m_result = zorvex_api::Load(FromUtf8(uri), m_configuration, handles);
    }
    for (int i = 0; i < handles.GetSize(); ++i)
    {
        Object* object = handles[i].GetObject();
        Object* root = object ? object->GetRoot() : nullptr;
        if (root && std::find(m_roots.begin(), m_roots.end(), root) == m_roots.end())
        {
            m_roots.push_back(root);
        }
    }
    Report(m_result);
    if (m_result.Ok() && m_roots.empty())
    {
        Report(zorvex_api::ERROR, 4, "Nothing was loaded: \"" + uri + "\"");
    }
    return m_result.Ok() && !m_roots.empty();
}

bool Document::Save(const std::string& uri)
{
    Result result;
    {
        const Progress progress("Saving " + uri);
        result = Root()->Save(FromUtf8(uri), m_configuration);
    }
    Report(result);
    return result.Ok();
}

Object* Document::Find(const std::string& id) const
{
    if (id == ".")
    {
        return Root();
    }
    const std::string bare = id.compare(0, 1, "#") == 0 ? id.substr(1) : id;
    for (Object* root : m_roots)
    {
        Object* object = root->GetId() == FromUtf8(bare) ? root : root->ResolveId(FromUtf8(bare));
        if (object)
        {
            return object;
        }
    }
    Report(zorvex_api::ERROR, 517, "No element with the id \"" + bare + "\"");
    return nullptr;
}

}  // namespace zorvex_cli
