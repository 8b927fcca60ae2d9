// While an object of this class lives, libxml2 reports its errors on this thread to it instead of
// printing them to standard error. It keeps the first fatal error (else the first error) for the
// parse error record.
#pragma once

#include <string>

#include <libxml/xmlerror.h>

namespace qvr::dom {

struct CapturedError {
    int code = 0;
    int line = 0;
    int column = 0;
    std::string message;
};

class QuietErrors {
public:
    QuietErrors();
    ~QuietErrors();
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

    // Null when no error was reported.
    const CapturedError* first() const { return seen_ ? &first_ : nullptr; }

private:
    static void onError(void* self, xmlErrorPtr error);
    static void onGeneric(void* self, const char* message, ...);

    xmlStructuredErrorFunc savedStructured_;
    void* savedStructuredContext_;
    xmlGenericErrorFunc savedGeneric_;
    void* savedGenericContext_;
    bool seen_ = false;
    bool fatal_ = false;
    CapturedError first_;
};

} // namespace qvr::dom
