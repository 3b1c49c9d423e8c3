// Generated from the vocabulary of the schemas; don't edit.
#include "schema/GeneratedClasses.h"

#include "runtime/NamespaceUris.h"

namespace zorvex_api::internal
{

namespace
{

// The vocabulary and the library agree on the namespaces.
static_assert(uris::kMain == u"http://example.org/Main");
static_assert(uris::kCharacteristic == u"http://example.org/Cha");

constexpr ClassInitialisers kInitialisers = {
    &Initialise_zorvex60_Bolt,
    &Initialise_zorvex60_Part,
    &Initialise_zorvex60_IdObject,
    &Initialise_zorvex60_Frame,
    &Initialise_zorvex_cha60_Nut,
};

}  // namespace

const ClassInitialisers& GeneratedClassInitialisers()
{
    return kInitialisers;
}

}  // namespace zorvex_api::internal
