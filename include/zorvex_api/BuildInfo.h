#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

struct BuildInfoImpl;

/// Version and build time of a library. A value.
class ZORVEX_API BuildInfo : public Allocator
{
public:
    /// All values 0.
    BuildInfo();
    /// `date` is day, month, year, hour, minute and second, divided by any of "/-: ". The month
    /// may be a three-letter English name; a year below 1900 has 2000 added.
    BuildInfo(int major, int minor, int revision, int build, const char* date);
    BuildInfo(int major, int minor, int revision, int build, int year, int month, int day, int hour,
              int minute, int second);
    BuildInfo(const BuildInfo& other);
    BuildInfo& operator=(const BuildInfo& other);
    virtual ~BuildInfo();

    int GetMajorRevision() const;
    int GetMinorRevision() const;
    int GetRevision() const;
    int GetBuildNumber() const;
    int GetYear() const;
    int GetMonth() const;
    int GetDay() const;
    int GetHour() const;
    int GetMinute() const;
    int GetSecond() const;

    /// The version as text, as "7.2.0.036".
    String GetVersionText() const;

private:
    BuildInfoImpl* m_impl;  // owned
};

}  // namespace zorvex_api
