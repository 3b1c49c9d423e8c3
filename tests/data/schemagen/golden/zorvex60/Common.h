// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex_api/TypedAccess.h"

/// Classes whose documents' namespace is
/// http://example.org/Main
namespace zorvex60
{

namespace typed = zorvex_api::typed;
using zorvex_api::Array;
using zorvex_api::Configuration;
using zorvex_api::Handle;
using zorvex_api::Object;
using zorvex_api::Result;
using zorvex_api::String;
using zorvex_api::Transf;
using zorvex_api::Vector;

}  // namespace zorvex60
