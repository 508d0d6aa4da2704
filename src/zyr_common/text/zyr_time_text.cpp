#include "zyr_common/text/zyr_time_text.h"

#include <ctime>
#include <sys/time.h>

namespace zyr {

namespace {

struct UtcTime {
    tm m_fields;
    unsigned int m_microseconds;
};

bool readUtcTime(UtcTime& p_time) {
    timeval now;
    gettimeofday(&now, nullptr);
    p_time.m_microseconds = static_cast<unsigned int>(now.tv_usec);
    return gmtime_r(&now.tv_sec, &p_time.m_fields) != nullptr;
}

void formatTime(String& p_text, const char* p_format, const UtcTime& p_time, unsigned int p_fraction)
    __attribute__((format(printf, 2, 0)));
void formatTime(String& p_text, const char* p_format, const UtcTime& p_time, unsigned int p_fraction) {
    const tm& fields = p_time.m_fields;
    String::newFormatted(p_text, p_format, static_cast<unsigned int>(fields.tm_year + 1900),
                         static_cast<unsigned int>(fields.tm_mon + 1), static_cast<unsigned int>(fields.tm_mday),
                         static_cast<unsigned int>(fields.tm_hour), static_cast<unsigned int>(fields.tm_min),
                         static_cast<unsigned int>(fields.tm_sec), p_fraction);
}

} // namespace

void zyr_getCurrentTimeString(String& p_text) {
    UtcTime time;
    p_text.clear();
    if (readUtcTime(time)) {
        formatTime(p_text, "%04u-%02u-%02u %02u:%02u:%02u.%06u", time, time.m_microseconds);
    }
}

void zyr_getCurrentTimeStringDigest(String& p_text) {
    UtcTime time;
    p_text.clear();
    if (readUtcTime(time)) {
        formatTime(p_text, "_%04u-%02u-%02u_%02u%02u%02u%03u", time, time.m_microseconds / 1000);
    }
}

} // namespace zyr
