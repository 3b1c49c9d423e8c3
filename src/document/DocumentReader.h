#pragma once

#include "document/ReferenceData.h"
#include "zorvex_api/Array.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class ClassDescriptor;
class Configuration;
class Object;
class Result;
class Stream;

/// Reads a document from a stream.
///
/// `path` is the document's name, `options` may be null. Roots are appended to `objects`, which the
/// caller owns, also when the document is malformed; `references` (optional) gets the URI
/// references that are still to be resolved, `createdClasses` (optional) the classes made at run
/// time. `schemaMode` non-zero: the document is an XML schema. `forceUtf8`: the text is UTF-8
/// whatever it declares.
///
/// `result` gets what the reader finds; beside that error 4 "No suitable root element found" and,
/// after other errors, error 4 " ( last id read was: ...". Raises Exception 2 "Internal Exception"
/// when anything is thrown past the parse.
void ParseStream(const String& path, Stream* stream, Configuration* options,
                 Array<Object*>& objects, ReferenceList* references, Result& result, int schemaMode,
                 Array<ClassDescriptor*>* createdClasses, bool forceUtf8 = false);

}  // namespace zorvex_api
