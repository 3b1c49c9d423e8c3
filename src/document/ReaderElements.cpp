#include "document/ParserImpl.h"

#include <memory>
#include <utility>

#include "document/UnknownClass.h"
#include "objectmodel/ClassRegistry.h"
#include "objectmodel/IdTable.h"
#include "objectmodel/Namespace.h"
#include "runtime/MutexLock.h"
#include "runtime/NamespaceUris.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Exception.h"
#include "zorvex_api/GenericObject.h"

namespace zorvex_api
{

namespace
{

constexpr int kNamespaceMutex = 6;

constexpr int kInvalid = 520;

struct RootName
{
    TextView element;
    TextView className;
};

constexpr RootName kRootNames[] = {
    {u"ZORVEX", u"Document"},
    {u"oRB", u"Document"},
    {u"ZORVEXRequest", u"RequestDocument"},
    {u"oRBRequest", u"RequestDocument"},
};

String OptionText(Configuration* options, const char16_t* path)
{
    String value;
    if (options != nullptr)
    {
        options->Get(path, value);
    }
    return value;
}

SubElementMode SubElementModeOf(const String& text)
{
    if (text == u"warning")
    {
        return SubElementMode::Warn;
    }
    return text == u"none" ? SubElementMode::Replace : SubElementMode::Refuse;
}

/// The field that an embedded schema was held by and that lost its class with it.
bool HeldEmbeddedSchema(const FieldDescriptor& field)
{
    return field.NameView() == u"schema" && field.Class() == nullptr && field.Owner() != nullptr &&
           field.Owner()->InMainNamespace() && View(field.Owner()->Name()) == u"Schema";
}

bool IsMainClassNamed(ClassDescriptor* descriptor, TextView name)
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(descriptor);
    return impl != nullptr && impl->InMainNamespace() && View(impl->Name()) == name;
}

}  // namespace

ParserImpl::ParserImpl() = default;
ParserImpl::~ParserImpl() = default;

void ParserImpl::Prepare()
{
    limits = ParseLimits::FromOptions(options);
    m_ignoreUnknown = OptionText(options, u"adapters/ZORVEX/ignore_unknown_elements") != u"false";
    m_savedIgnoreUnknown = m_ignoreUnknown;
    m_treatEmptyAsSet = OptionText(options, u"adapters/ZORVEX/empty_attributes") == u"treat_as_set";
    m_checkDocument = OptionText(options, u"adapters/ZORVEX/validation/load_save") != u"minimal";
    m_subElements =
        SubElementModeOf(OptionText(options, u"adapters/ZORVEX/import/multiple_sub_elements"));

    {
        // Registered namespaces are the outermost. One without a prefix is no default of a
        // document.
        const MutexLock lock(kNamespaceMutex);
        for (const Namespace* ns = Namespace::First(); ns != nullptr; ns = ns->Next())
        {
            if (!ns->Prefix().IsEmpty())
            {
                const String& uri = ns->IsLegacy() ? ns->Target()->Uri() : ns->Uri();
                m_scope.BindOutside(View(ns->Prefix()), m_scope.Intern(View(uri)));
            }
        }
    }
    String ignored;
    Configuration* given =
        options != nullptr ? options->Get(u"adapters/ZORVEX/namespaces", ignored) : nullptr;
    for (int i = 0; given != nullptr && i < given->NumberOfConfigurations(); ++i)
    {
        Configuration* child = given->GetConfiguration(i);
        const String prefix = child->GetName();
        String uri = child->GetValue();
        const MutexLock lock(kNamespaceMutex);
        const Namespace* registered = Namespace::FindByUri(View(uri));
        if (registered != nullptr && registered->IsLegacy())
        {
            uri = registered->Target()->Uri();
        }
        m_scope.BindOutside(View(prefix), m_scope.Intern(View(uri)));
    }
}

void ParserImpl::Warn(int code, const String& text)
{
    result->AddError(code, WARNING, text);
}

void ParserImpl::Fail(int code, const String& text)
{
    result->AddError(code, text);
}

// --- start ---------------------------------------------------------------------------------------

ParserImpl::ElementName& ParserImpl::InternName(TextView raw)
{
    ElementName* const before = m_name;
    if (before != nullptr && before->follower != nullptr && before->follower->raw == raw)
    {
        return *before->follower;
    }
    const auto found = m_elementNames.find(raw);
    if (found != m_elementNames.end())
    {
        if (before != nullptr)
        {
            before->follower = found->second.get();
        }
        return *found->second;
    }
    auto name = std::make_unique<ElementName>();
    name->raw = raw;
    const TextView text = name->raw;
    const std::size_t colon = text.find(u':');
    name->prefix = colon == text.npos ? TextView() : text.substr(0, colon);
    name->local = colon == text.npos ? text : text.substr(colon + 1);
    name->isSchema = name->local == u"schema";
    return *m_elementNames.emplace(text, std::move(name)).first->second;
}

void ParserImpl::StartElement(TextView name, const Parser::UCharList& names,
                              const Parser::UCharList& values)
{
    FlushText(true);
    if (++m_depth > limits.depth)
    {
        limits.FailDepth();
    }
    if (m_inContentElement)
    {
        throw Exception(kInvalid, u"Invalid ZORVEX.");
    }
    OpenNamespaces(names, values);
    m_name = &InternName(name);
    ElementNamespace ns = FindNamespace();
    ReportNamespace(ns, name);

    const bool beginsSchema = IsEmbeddedSchemaStart();
    if (beginsSchema)
    {
        BeginEmbeddedSchema();
        ns.known = true;
    }
    if (m_skipDepth > 0 || (m_ignoreUnknown && !ns.known && m_inDocument))
    {
        SkipElement();
    }
    else if (!m_inDocument)
    {
        StartRoot(ns, names, values);
    }
    else
    {
        StartChild(ns, names, values);
        if (beginsSchema)
        {
            Top().embeddedSchema = true;
        }
    }
}

void ParserImpl::EndElement()
{
    if (m_depth == 0)
    {
        return;  // of a parser that closes more than it opened
    }
    FlushText(false);
    m_scope.Close(static_cast<unsigned>(m_depth));
    --m_depth;
    if (!m_inDocument)
    {
        return;
    }
    if (m_skipDepth > 0)
    {
        --m_skipDepth;
        return;
    }
    if (m_inContentElement)
    {
        CloseContentElement();
        return;
    }
    Frame& frame = Top();
    StoreContent(frame);
    ClassData& data = *frame.data;
    if (frame.embeddedSchema)
    {
        EndEmbeddedSchema(data);
    }
    else if (IsMainClassNamed(data.GetClassDescriptor(), u"Schema"))
    {
        LoadReferencedSchema(data);
    }
    if (frame.convertsBound)
    {
        ConvertBound(data);
    }
    const bool endedSchema = frame.embeddedSchema;
    --m_depthOpen;
    if (endedSchema)
    {
        ReleaseEmbeddedSchema(data);
    }
    if (m_depthOpen == 0)
    {
        m_inDocument = false;
        if (m_inEmbeddedSchema)
        {
            Fail(kInvalid, u"Expected end of <xsd:schema> element.");
        }
    }
}

// --- namespaces ----------------------------------------------------------------------------------

void ParserImpl::OpenNamespaces(const Parser::UCharList& names, const Parser::UCharList& values)
{
    const int count = names.GetLength();
    for (int i = 0; i < count; ++i)
    {
        const unsigned short* text = names[i];
        if (text == nullptr || text[0] != u'x')
        {
            continue;
        }
        const TextView name(AsChar16(text));
        if (!IsNamespaceAttribute(name))
        {
            continue;
        }
        const TextView prefix = name.size() > 6 ? name.substr(6) : TextView();
        const TextView value = TakeValue(values[i]);
        const MutexLock lock(kNamespaceMutex);
        const Namespace* registered = Namespace::FindByUri(value);
        if (registered != nullptr && registered->IsLegacy())
        {
            result->AddError(kInvalid, MESSAGE,
                             String(u"Legacy namespace found: ") + ToString(value));
            m_scope.Bind(prefix, m_scope.Intern(View(registered->Target()->Uri())),
                         static_cast<unsigned>(m_depth));
            continue;
        }
        m_scope.Bind(prefix, m_scope.Intern(value), static_cast<unsigned>(m_depth));
    }
}

ParserImpl::ElementNamespace ParserImpl::FindNamespace()
{
    ElementNamespace ns;
    if (m_name->prefix.empty())
    {
        if (m_defaultVersion != m_scope.Version())
        {
            m_default = m_scope.Find(TextView());
            m_defaultVersion = m_scope.Version();
        }
        ns.name = m_default;
        if (!m_inDocument)
        {
            m_noNamespaces = ns.name == nullptr;
        }
        if (ns.name == nullptr && !m_noNamespaces)
        {
            ns.name = m_scope.Intern(Namespace::MainUri());
            m_scope.Bind(TextView(), ns.name, static_cast<unsigned>(m_depth));
            ns.assumed = true;
        }
    }
    else
    {
        ns.name = m_scope.Find(m_name->prefix);
        if (!m_inDocument)
        {
            m_noNamespaces = false;
        }
    }
    // A document without namespaces is searched in all of them.
    const bool anyNamespace = ns.name == nullptr && m_name->prefix.empty() && m_noNamespaces;
    ns.known = anyNamespace || ns.assumed || (ns.name != nullptr && ns.name->known);
    return ns;
}

void ParserImpl::ReportNamespace(const ElementNamespace& ns, TextView rawName)
{
    if (ns.assumed)
    {
        Warn(kInvalid, String::Format("No namespace for element: <%s>: assuming zorvex intended",
                                      ToUtf8(rawName).c_str()));
    }
    else if (ns.name == nullptr && !ns.known)
    {
        Fail(kInvalid, String(u"No namespace for element: <") + ToString(rawName) + String(u">"));
    }
}

void ParserImpl::SkipElement()
{
    ++m_skipDepth;
    Warn(kInvalid, String(u"Unknown element: ") + ToString(m_name->local));
}

// --- classes -------------------------------------------------------------------------------------

ClassDescriptor* ParserImpl::FindClass(const ElementNamespace& ns)
{
    ClassDescriptor* found =
        ns.name != nullptr ? ClassRegistry::Find(ns.name->view, m_name->local) : nullptr;
    return found == nullptr && m_noNamespaces ? ClassRegistry::FindInAnyNamespace(m_name->local)
                                              : found;
}

ClassDescriptor* ParserImpl::FindRootClass(const ElementNamespace& ns)
{
    for (const RootName& root : kRootNames)
    {
        if (root.element == m_name->local)
        {
            return ClassRegistry::Find(Namespace::MainUri(), root.className);
        }
    }
    return FindClass(ns);
}

ClassDescriptor* ParserImpl::MakeRuntimeClass(const ElementNamespace& ns, ClassDescriptor* base)
{
    const TextView uri = m_noNamespaces || ns.name == nullptr ? TextView() : ns.name->view;
    const TextView prefix = uri.empty() ? TextView() : m_name->prefix;
    bool made = false;
    ClassDescriptor* descriptor =
        ClassRegistry::MakeRuntimeClass(m_name->local, uri, prefix, base, &made);
    if (made && createdClasses != nullptr)
    {
        createdClasses->Add(descriptor);
    }
    if (ns.name != nullptr)
    {
        ns.name->known = true;
    }
    return descriptor;
}

// --- root ----------------------------------------------------------------------------------------

void ParserImpl::StartRoot(const ElementNamespace& ns, const Parser::UCharList& names,
                           const Parser::UCharList& values)
{
    ClassDescriptor* descriptor = FindRootClass(ns);
    if (descriptor == nullptr && m_ignoreUnknown)
    {
        Warn(kInvalid, String(u"Unknown element: ") + ToString(m_name->local));
        return;
    }
    if (descriptor == nullptr)
    {
        descriptor = MakeRuntimeClass(ns, nullptr);
    }
    OpenObject(descriptor, nullptr, nullptr, names, values);
}

// --- children ------------------------------------------------------------------------------------

void ParserImpl::StartChild(const ElementNamespace& ns, const Parser::UCharList& names,
                            const Parser::UCharList& values)
{
    Plan* kept = FindPlan(ns);
    if (kept != nullptr && IsCurrent(*kept))
    {
        StartPlanned(*kept, names, values);
        return;
    }
    if (StartBound(names, values) || StartSchemaInfo(names, values))
    {
        return;
    }
    const Plan plan = MakePlan(ns);
    if (plan.kind == PlanKind::Other)
    {
        StartSearched(plan, ns, names, values);
        return;
    }
    if (kept != nullptr)
    {
        *kept = plan;
    }
    else
    {
        m_name->plans.push_back(plan);
    }
    StartPlanned(plan, names, values);
}

ParserImpl::Plan* ParserImpl::FindPlan(const ElementNamespace& ns)
{
    const ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    for (Plan& plan : m_name->plans)
    {
        if (plan.parent == parent && plan.ns == ns.name)
        {
            return &plan;
        }
    }
    return nullptr;
}

/// Whether nothing has changed since that could lead elsewhere.
bool ParserImpl::IsCurrent(const Plan& plan)
{
    return plan.parentGeneration == plan.parent->Generation() &&
           plan.namesGeneration == ClassRegistry::NamesGeneration();
}

/// Looks the element up as a field of the open object's class, then as a substitute for one.
/// `descriptor` of an undecided plan is the class of the element's own name, null when there is
/// none.
ParserImpl::Plan ParserImpl::MakePlan(const ElementNamespace& ns)
{
    const ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    Plan plan{};
    plan.parent = parent;
    plan.ns = ns.name;
    plan.kind = PlanKind::Other;
    if (FieldDescriptor* field = FindNamedField(ns))
    {
        plan.field = field;
        if (field->Type() == zorvexFieldContentElement)
        {
            plan.kind = PlanKind::ContentElement;
        }
        else
        {
            plan.descriptor = ClassOfField(field, ns);
            if (plan.descriptor == nullptr)
            {
                throw Exception(2, u"No ClassDescriptor");
            }
            plan.kind = PlanKind::Field;
        }
    }
    else if ((plan.descriptor = FindClass(ns)) != nullptr)
    {
        plan.field = FindSubstituteField(plan.descriptor);
        plan.kind = plan.field != nullptr ? PlanKind::Field : PlanKind::Other;
    }
    if (plan.kind == PlanKind::Field)
    {
        if (!ns.known)
        {
            throw String(u"Wrong namespace for element: ") + ToString(m_name->local);
        }
        plan.remembered = RememberedName(plan.descriptor, plan.field);
    }
    // Read last: finding the class of a field of a run-time class can change both.
    plan.parentGeneration = parent->Generation();
    plan.namesGeneration = ClassRegistry::NamesGeneration();
    return plan;
}

void ParserImpl::StartPlanned(const Plan& plan, const Parser::UCharList& names,
                              const Parser::UCharList& values)
{
    if (plan.kind == PlanKind::ContentElement)
    {
        OpenContentElement(SAXContainerObject::Form::Field, plan.field, names);
        return;
    }
    OpenObject(plan.descriptor, plan.field, plan.remembered, names, values);
}

void ParserImpl::StartSearched(const Plan& plan, const ElementNamespace& ns,
                               const Parser::UCharList& names, const Parser::UCharList& values)
{
    const ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    if (parent->IsRuntimeClass() || m_inEmbeddedSchema)
    {
        StartOpen(ns, names, values);
    }
    else if (parent->Layout().Wildcard() != nullptr)
    {
        StartUnderWildcard(plan.descriptor, ns, names, values);
    }
    else
    {
        StartUnfielded(plan.descriptor, ns, names, values);
    }
}

FieldDescriptor* ParserImpl::FindNamedField(const ElementNamespace& ns)
{
    const ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    const auto accepts = [&](const FieldDescriptor& field)
    {
        if (field.IsWildcard() || HeldEmbeddedSchema(field))
        {
            return false;
        }
        if (m_noNamespaces || ns.name == nullptr)
        {
            return true;
        }
        const ClassDescriptorImpl* fieldClass = field.Type() == zorvexFieldContentElement
                                                    ? nullptr
                                                    : ClassDescriptorImpl::Of(field.Class());
        if (fieldClass != nullptr && View(fieldClass->NamespaceUri()) == ns.name->view)
        {
            return true;
        }
        // A field made for an unknown element is of that element's namespace alone.
        return !IsUnknownClass(fieldClass) && field.Owner() != nullptr &&
               View(field.Owner()->NamespaceUri()) == ns.name->view;
    };
    return parent->Layout().FindElementIf(m_name->local, accepts);
}

ClassDescriptor* ParserImpl::ClassOfField(FieldDescriptor* field, const ElementNamespace& ns)
{
    ClassDescriptor* descriptor = field->Class();
    if (descriptor == nullptr && field->Owner() != nullptr && field->Owner()->IsRuntimeClass())
    {
        descriptor = MakeRuntimeClass(ns, nullptr);
        field->SetClassValue(descriptor->GetClass());
    }
    return descriptor;
}

FieldDescriptor* ParserImpl::FindSubstituteField(ClassDescriptor* descriptor)
{
    const ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    const ClassDescriptorImpl* child = ClassDescriptorImpl::Of(descriptor);
    for (FieldDescriptor* field : parent->Layout().ElementFields())
    {
        if (!field->IsWildcard() && field->Class() != nullptr && child->IsSubClass(field->Class()))
        {
            return field;
        }
    }
    return nullptr;
}

void ParserImpl::StartOpen(const ElementNamespace& ns, const Parser::UCharList& names,
                           const Parser::UCharList& values)
{
    ClassDescriptor* descriptor = FindClass(ns);
    if (descriptor == nullptr)
    {
        descriptor = MakeRuntimeClass(ns, nullptr);
    }
    // The field that takes it: of the element's name, made when the class has none.
    ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    FieldDescriptor* field = parent->Layout().FindElement(m_name->local);
    if (field == nullptr || field->Type() == zorvexFieldContentElement)
    {
        field =
            parent->AddRuntimeField(m_name->local, zorvexFieldMultipleElement, descriptor, nullptr);
    }
    OpenObject(descriptor, field, RememberedName(descriptor, nullptr), names, values);
}

void ParserImpl::StartUnfielded(ClassDescriptor* found, const ElementNamespace& ns,
                                const Parser::UCharList& names, const Parser::UCharList& values)
{
    const FieldRange fields =
        ClassDescriptorImpl::Of(Current()->GetClassDescriptor())->Layout().ElementFields();
    FieldDescriptor* chosen = nullptr;
    for (FieldDescriptor* field : fields)
    {
        if (field->Type() == zorvexFieldMultipleElement)
        {
            chosen = field;
            break;
        }
        chosen = chosen == nullptr ? field : chosen;
    }
    // A class that an unknown element was given before, here or in another document, is none that
    // the element could be out of place for.
    const bool isKnown = found != nullptr && !IsUnknownClass(ClassDescriptorImpl::Of(found));
    if (isKnown || m_ignoreUnknown || chosen == nullptr)
    {
        SkipElement();
        return;
    }
    ClassDescriptor* descriptor = found != nullptr ? found : MakeRuntimeClass(ns, chosen->Class());
    OpenObject(descriptor, chosen, RememberedName(descriptor, chosen), names, values);
}

void ParserImpl::StartUnderWildcard(ClassDescriptor* found, const ElementNamespace& ns,
                                    const Parser::UCharList& names, const Parser::UCharList& values)
{
    FieldDescriptor* wildcard =
        ClassDescriptorImpl::Of(Current()->GetClassDescriptor())->Layout().Wildcard();
    ClassDescriptor* descriptor = found;
    if (descriptor == nullptr)
    {
        const ClassDescriptorImpl* root =
            ClassDescriptorImpl::Of(DocumentRoot()->GetClassDescriptor());
        const bool inDelta = root->InMainNamespace() && View(root->OutputName()) == u"ZORVEXDelta";
        if (m_ignoreUnknown && !inDelta)
        {
            Fail(kInvalid, String(u"Unknown element: ") + ToString(m_name->local));
            ++m_skipDepth;
            return;
        }
        descriptor = MakeRuntimeClass(ns, nullptr);
    }
    OpenObject(descriptor, wildcard, RememberedName(descriptor, wildcard), names, values);
}

bool ParserImpl::StartSchemaInfo(const Parser::UCharList& names, const Parser::UCharList& values)
{
    ClassDescriptorImpl* parent = ClassDescriptorImpl::Of(Current()->GetClassDescriptor());
    if (m_name->local != u"SchemaInfo" || View(parent->Name()) != u"appinfo")
    {
        return false;
    }
    ClassDescriptor* descriptor = ClassRegistry::Find(Namespace::MainUri(), u"SchemaInfo");
    if (descriptor == nullptr)
    {
        return false;
    }
    FieldDescriptor* field = parent->Layout().FindElement(m_name->local);
    if (field == nullptr)
    {
        field =
            parent->AddRuntimeField(m_name->local, zorvexFieldMultipleElement, descriptor, nullptr);
    }
    OpenObject(descriptor, field, nullptr, names, values);
    return true;
}

// --- objects -------------------------------------------------------------------------------------

ParserImpl::Frame& ParserImpl::PushFrame(ClassData* data)
{
    if (m_depthOpen == m_frames.size())
    {
        m_frames.emplace_back();
    }
    Frame& frame = m_frames[m_depthOpen++];
    frame.data = data;
    frame.convertsBound = false;
    frame.embeddedSchema = false;
    frame.gathered.clear();
    return frame;
}

void ParserImpl::OpenContentElement(SAXContainerObject::Form form, FieldDescriptor* field,
                                    const Parser::UCharList& names)
{
    for (int i = 0; i < names.GetLength(); ++i)
    {
        const TextView name(names[i] != nullptr ? AsChar16(names[i]) : u"");
        if (!IsNamespaceAttribute(name))
        {
            Warn(525, String::Format("\"%s\" is not an allowed attribute of: <%s>",
                                     ToUtf8(name).c_str(), LocalUtf8().c_str()));
        }
    }
    m_container.form = form;
    m_container.field = field;
    m_container.gathered.clear();
    m_inContentElement = true;
}

void ParserImpl::OpenObject(ClassDescriptor* descriptor, FieldDescriptor* field,
                            const String* remembered, const Parser::UCharList& names,
                            const Parser::UCharList& values)
{
    Object* object = descriptor->MakeObject();
    if (object == nullptr)
    {
        throw Exception(2, u"No ClassDescriptor");
    }
    ClassData& data = *ClassData::Of(object);
    if (m_depthOpen == 0)
    {
        // From here on the object is the caller's, whatever happens.
        m_inDocument = true;
        std::unique_ptr<Object> fresh(object);
        objects->Add(object);
        fresh.release();
        PushFrame(&data);
        ReadAttributes(data, names, values);
        if (data.id.HasValue())
        {
            data.NeedIdTable().Insert(&data);
        }
    }
    else
    {
        PlaceChild(data, field, names, values);
        data.elementName = remembered;
        PushFrame(&data);
    }
    if (m_checkDocument)
    {
        CheckRequired(data, names);
    }
}

/// Reads a new object's attributes and puts it into the tree. Where either fails the object goes,
/// with the references met in it.
void ParserImpl::PlaceChild(ClassData& data, FieldDescriptor* field, const Parser::UCharList& names,
                            const Parser::UCharList& values)
{
    const std::size_t referencesBefore = references != nullptr ? references->size() : 0;
    try
    {
        ReadAttributes(data, names, values);
        Attach(data, field);
        if (data.owner == nullptr)
        {
            const String parentName = Current()->object->GetElementName();
            throw Exception(kInvalid,
                            String::Format("Unable to add <%s> to parent <%s>", LocalUtf8().c_str(),
                                           ToUtf8(parentName).c_str()));
        }
    }
    catch (...)
    {
        if (data.owner == nullptr)
        {
            if (references != nullptr)
            {
                references->resize(referencesBefore);
            }
            delete data.object;
        }
        throw;
    }
}

void ParserImpl::Attach(ClassData& data, FieldDescriptor* field)
{
    ClassData& parent = *Current();
    if (parent.AppendChild(&data, field))
    {
        if (data.id.HasValue())
        {
            DocumentRoot()->NeedIdTable().Insert(&data);
        }
        return;
    }
    result->Merge(data.SetOwner(parent.object, TextView(), field, false, false,
                                static_cast<int>(m_subElements)));
}

/// Null where the name follows from the field and the class.
const String* ParserImpl::RememberedName(ClassDescriptor* descriptor, FieldDescriptor* field) const
{
    const ClassDescriptorImpl* impl = ClassDescriptorImpl::Of(descriptor);
    const String& outputName = impl->OutputName();
    if (View(outputName) == m_name->local || field == nullptr)
    {
        return &outputName;
    }
    if (field->NameView() == m_name->local)
    {
        return &field->Name();
    }
    if (!field->XmlNameView().empty() && m_name->local != u"Part")
    {
        return nullptr;
    }
    return &outputName;
}

}  // namespace zorvex_api
