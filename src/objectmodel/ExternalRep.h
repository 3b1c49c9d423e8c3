#pragma once

#include <cstdint>
#include <string>

#include "runtime/Text.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/Handle.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class ClassData;
class Configuration;
class FieldDescriptor;
class Object;
class Pointer;
class Result;
class URIResolver;

/// One URI reference of a field: its text, its format and what it leads to.
///
/// Owned by the field that holds it. The record is part of the object model; what needs pointers
/// and adapters (SetText with ".." segments, Resolve, Save, GetRelativeText, the end of a pulled-in
/// document) is defined in src/transport. "#id12" is kept as the number 12 and costs no text.
///
/// A target that is an Object knows the reference: it stands in the target's chain of incoming
/// references, so that the end of the target clears it.
struct ExternalRep
{
    static constexpr std::uint32_t kRepresentation = 2;  // kind of owner, by class name
    static constexpr std::uint32_t kCompoundRep = 4;
    static constexpr std::uint32_t kExternalFile = 8;
    static constexpr std::uint32_t kLocatorRef = 16;
    static constexpr std::uint32_t kLoad = 32;  // the attribute "load" is "true"
    static constexpr std::uint32_t kKindKnown = 64;
    static constexpr std::uint32_t kHandles = 0x100;       // `target` is an owned Array<Handle>
    static constexpr std::uint32_t kNumericText = 0x200;   // the text is "#id" and `number`
    static constexpr std::uint32_t kZorvexFormat = 0x400;  // the format is the shared text "ZORVEX"
    static constexpr std::uint32_t kCounted = 0x800;       // entered in documentUseCounts

    union
    {
        std::uint32_t number;
        char16_t* text = nullptr;  // owned, terminated by 0, unescaped; may be null
    };
    char16_t* format = nullptr;  // owned; null with kZorvexFormat or without a format
    union
    {
        Object* target = nullptr;
        Array<Handle>* handles;  // owned, with kHandles
    };
    // Chain of the references whose target is the same Object; head in the target's ClassData.
    ExternalRep* nextIncoming = nullptr;
    ExternalRep** previousIncoming = nullptr;
    std::uint32_t flags = 0;
    // The object whose field holds this reference; fixed when it is made.
    ClassData* owner = nullptr;

    /// Makes a record for a field of `owner`; the memory comes from a free list.
    static ExternalRep* Make(ClassData& owner);
    /// Frees the record and lets go of its target.
    static void Destroy(ExternalRep* rep);

    // --- text (src/objectmodel) -----------------------------------------------------------------
    void AppendText(std::u16string& out) const;
    void AppendText(std::string& outUtf8) const;
    String GetText() const;
    bool HasText() const;
    /// Stores the text as it is.
    void StoreText(TextView newText);
    /// The format, empty when there is none.
    TextView FormatText() const;
    /// Stores the format for this reference alone: the predecessor's name counts as "ZORVEX", and
    /// "unset" as no format.
    void StoreFormat(TextView newFormat);

    // --- target (src/objectmodel) ---------------------------------------------------------------
    bool HasTarget() const;
    /// The single object that it leads to, else null.
    Object* TargetObject() const { return (flags & kHandles) != 0 ? nullptr : target; }
    /// Points at one object, linking it into the target's chain; null clears. Text and format stay.
    void LinkTarget(Object* object);
    /// Forgets the target or the array of handles. Uses of pulled-in documents aren't given back
    /// here: see ReleaseTargets.
    void ClearTarget();

    // --- behaviour that needs pointers and adapters (src/transport) ------------------------------
    void SetText(Object* ownerObject, TextView newText, bool clearTarget);
    void SetFormat(Object* ownerObject, TextView newFormat, bool writeThrough);
    String GetFormat(Object* ownerObject);
    /// Points at an object of the same tree: format and text follow.
    void SetTarget(Object* ownerObject, Object* object);
    void SetTargets(const Array<Handle>& newTargets);
    /// Counts a use of each pulled-in document that a target stands in, other than the owner's own:
    /// for targets that were set, not resolved.
    void CountUses();
    void GetTargets(Array<Handle>& out) const;
    void MoveTargets(Array<Handle>& out);
    /// `loadAllowed` false: local or already loaded targets only, no document is opened.
    void Resolve(Object* ownerObject, Adapter* previous, Configuration* options,
                 URIResolver* resolver, FieldDescriptor* field, int load, bool loadAllowed,
                 Result& result);
    void ResolveAfterParse(Object* ownerObject, Adapter* adapter, Configuration* options,
                           URIResolver* resolver, FieldDescriptor* field, int load, Result& result,
                           Array<Handle>& roots);
    void Save(Object* ownerObject, Adapter* adapter, int referenceMode, Configuration* options,
              FieldDescriptor* field, Result& result);
    void GetEscapedText(String& out) const;
    void GetRelativeText(const Pointer& document, String& out) const;
    /// Lets go of the targets before they are forgotten: pulled-in documents lose a use. Nothing
    /// happens for a reference that counts no use and holds no handles.
    void ReleaseTargets();

private:
    void FreeText();
    void FreeFormat();
    void Unlink();
};

}  // namespace zorvex_api
