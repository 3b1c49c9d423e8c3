#pragma once

#include "zorvex_api/String.h"

namespace zorvex_api
{

/// A moment of the local clock, as the time stamps of documents have it.
struct LocalTime
{
    int year;
    int month;  // 1 to 12
    int day;    // 1 to 31
    int hour;
    int minute;
    int second;

    /// Now; takes mutex 3 for the conversion.
    static LocalTime Now();

    String DateText() const;  ///< "%04d-%02d-%02d"
    String TimeText() const;  ///< "%02d:%02d:%02d"
};

}  // namespace zorvex_api
