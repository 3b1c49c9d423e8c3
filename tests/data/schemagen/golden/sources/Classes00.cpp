// Generated from the vocabulary of the schemas; don't edit.
#include "schema/ClassTable.h"
#include "schema/GeneratedClasses.h"
#include "zorvex60/Bolt.h"
#include "zorvex60/Frame.h"
#include "zorvex60/IdObject.h"
#include "zorvex60/Part.h"
#include "zorvex_api/FieldInfo.h"
#include "zorvex_cha60/Nut.h"

namespace zorvex60
{
short zorvexClassBolt = 0;
short zorvexClassScrew = 0;
Bolt::Bolt()
{
    InitData(zorvexClassBolt);
}
Bolt::Bolt(Object* owner) : Bolt()
{
    const Result result = typed::Attach(*this, owner);
    if (!result.Ok())
    {
        InitData(0);
        typed::RaiseNotAttached(result);
    }
}
Bolt::~Bolt() = default;
}  // namespace zorvex60

namespace zorvex60
{
short zorvexClassPart = 0;
Part::Part()
{
    InitData(zorvexClassPart);
}
Part::Part(Object* owner) : Part()
{
    const Result result = typed::Attach(*this, owner);
    if (!result.Ok())
    {
        InitData(0);
        typed::RaiseNotAttached(result);
    }
}
Part::~Part() = default;
}  // namespace zorvex60

namespace zorvex60
{
short zorvexClassIdObject = 0;
IdObject::IdObject()
{
    InitData(zorvexClassIdObject);
}
IdObject::IdObject(Object* owner) : IdObject()
{
    const Result result = typed::Attach(*this, owner);
    if (!result.Ok())
    {
        InitData(0);
        typed::RaiseNotAttached(result);
    }
}
IdObject::~IdObject() = default;
}  // namespace zorvex60

namespace zorvex60
{
short zorvexClassFrame = 0;
Frame::Frame()
{
    InitData(zorvexClassFrame);
}
Frame::Frame(Object* owner) : Frame()
{
    const Result result = typed::Attach(*this, owner);
    if (!result.Ok())
    {
        InitData(0);
        typed::RaiseNotAttached(result);
    }
}
Frame::~Frame() = default;
}  // namespace zorvex60

namespace zorvex_cha60
{
short zorvexClassNut = 0;
Nut::Nut()
{
    InitData(zorvexClassNut);
}
Nut::Nut(Object* owner) : Nut()
{
    const Result result = typed::Attach(*this, owner);
    if (!result.Ok())
    {
        InitData(0);
        typed::RaiseNotAttached(result);
    }
}
Nut::~Nut() = default;
}  // namespace zorvex_cha60

namespace zorvex_api::internal
{

namespace
{

const ModuleRow kTiny = {u"1.0 Tiny.xsd", u"http://example.org/Main", u""};

const ModuleRow kOther = {u"1.0 Other.xsd", u"http://example.org/Cha", u"ex_cha"};

const FieldRow kFields_zorvex60_Bolt[] = {
    {u"hollow", nullptr, u"false", nullptr, nullptr, zorvexFieldLogical, FieldRow::kNoLength, FieldRow::kNone},
    {u"count", nullptr, nullptr, nullptr, nullptr, zorvexFieldInt, FieldRow::kNoLength, FieldRow::kRequired},
    {u"ratios", nullptr, nullptr, nullptr, nullptr, zorvexFieldDouble, 0, FieldRow::kNone},
    {u"axis", nullptr, u"0.0,0.0,1.0", nullptr, nullptr, zorvexFieldDouble, 3, FieldRow::kDeprecated},
    {u"attribute", nullptr, nullptr, nullptr, nullptr, zorvexFieldString, FieldRow::kNoLength, FieldRow::kNone},
    {u"origin", nullptr, nullptr, nullptr, nullptr, zorvexFieldVector, 3, FieldRow::kNone},
    {u"Note", u"String", nullptr, nullptr, nullptr, zorvexFieldContentElement, 1, FieldRow::kNone},
    {u"Direction", u"Double", nullptr, nullptr, nullptr, zorvexFieldContentElement, 3, FieldRow::kNone},
    {u"Matrix", u"Double", nullptr, nullptr, nullptr, zorvexFieldContentElement, 0, FieldRow::kNone},
    {u"head", u"Head", u"hexagon", &zorvex60::zorvexFieldEnumHead, &zorvex60::eHead::Values, 0, FieldRow::kNoLength, FieldRow::kNone},
    {u"textRef", u"http://example.org/Main:Text", nullptr, nullptr, nullptr, zorvexFieldSingleURI, FieldRow::kNoLength, FieldRow::kNone},
    {u"nutRefs", u"http://example.org/Cha:Nut http://example.org/Main:Bolt", nullptr, nullptr, nullptr, zorvexFieldMultipleURI, FieldRow::kNoLength, FieldRow::kNone},
    {u"partRef", u"http://example.org/Main:Part", nullptr, nullptr, nullptr, zorvexFieldSingleReference, FieldRow::kNoLength, FieldRow::kNone},
    {u"boltRefs", u"http://example.org/Main:Bolt", nullptr, nullptr, nullptr, zorvexFieldMultipleReference, FieldRow::kNoLength, FieldRow::kNone},
    {u"Washer", u"http://example.org/Main:Part", nullptr, nullptr, nullptr, zorvexFieldSingleElement, FieldRow::kNoLength, FieldRow::kRequired},
    {u"Status", u"http://example.org/Main:Part", nullptr, nullptr, nullptr, zorvexFieldMultipleElement, FieldRow::kNoLength, FieldRow::kNone},
    {u"", u"Object", nullptr, nullptr, nullptr, zorvexFieldMultipleElement, FieldRow::kNoLength, FieldRow::kNone},
};

const char16_t* const kOptional_zorvex60_Bolt[] = {u"code", nullptr};

const FieldRow kFields_zorvex60_Part[] = {
    {u"code", nullptr, nullptr, nullptr, nullptr, zorvexFieldString, FieldRow::kNoLength, FieldRow::kRequired},
    {u"Content", nullptr, nullptr, nullptr, nullptr, zorvexFieldMatrix, 0, FieldRow::kNone},
};

const FieldRow kFields_zorvex_cha60_Nut[] = {
    {u"head", u"Head", nullptr, &zorvex60::zorvexFieldEnumHead, &zorvex60::eHead::Values, 0, FieldRow::kNoLength, FieldRow::kNone},
    {u"Lock", u"http://example.org/Cha:Nut", nullptr, nullptr, nullptr, zorvexFieldSingleElement, FieldRow::kNoLength, FieldRow::kNone},
    {u"Code", u"http://example.org/Cha:Nut", nullptr, nullptr, nullptr, zorvexFieldMultipleElement, FieldRow::kNoLength, FieldRow::kNone},
};

const ClassRow kClasses[] = {
    {&kTiny, u"Bolt", u"BoltBase",
     u"http://example.org/Main:Part", u"IdObject", &zorvex60::zorvexClassBolt, &zorvex60::zorvexClassScrew,
     &MakeObjectOf<zorvex60::Bolt>, kFields_zorvex60_Bolt, 17, kOptional_zorvex60_Bolt, false},
    {&kTiny, u"Part", u"PartType",
     u"http://example.org/Main:IdObject", u"IdObject", &zorvex60::zorvexClassPart, nullptr,
     &MakeObjectOf<zorvex60::Part>, kFields_zorvex60_Part, 2, nullptr, true},
    {&kTiny, u"IdObject", u"IdObjectType",
     u"Object", u"", &zorvex60::zorvexClassIdObject, nullptr,
     &MakeObjectOf<zorvex60::IdObject>, nullptr, 0, nullptr, true},
    {&kTiny, u"Frame", u"FrameType",
     u"Object", u"Object", &zorvex60::zorvexClassFrame, nullptr,
     &MakeObjectOf<zorvex60::Frame>, nullptr, 0, nullptr, false},
    {&kOther, u"Nut", u"NutType",
     u"http://example.org/Main:Part", u"Part", &zorvex_cha60::zorvexClassNut, nullptr,
     &MakeObjectOf<zorvex_cha60::Nut>, kFields_zorvex_cha60_Nut, 3, nullptr, false},
};

}  // namespace

int Initialise_zorvex60_Bolt(void* record)
{
    return InitialiseFromRow(record, kClasses[0]);
}
int Initialise_zorvex60_Part(void* record)
{
    return InitialiseFromRow(record, kClasses[1]);
}
int Initialise_zorvex60_IdObject(void* record)
{
    return InitialiseFromRow(record, kClasses[2]);
}
int Initialise_zorvex60_Frame(void* record)
{
    return InitialiseFromRow(record, kClasses[3]);
}
int Initialise_zorvex_cha60_Nut(void* record)
{
    return InitialiseFromRow(record, kClasses[4]);
}

}  // namespace zorvex_api::internal
