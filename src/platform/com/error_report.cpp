#include "platform/com/error_report.h"

#include <optional>

#include "platform/com/messages.h"

namespace qvr {
namespace {

thread_local std::optional<ErrorInfo> current;

void install(const ErrorSource& from, const String& text, std::uint32_t helpContext,
             const String& helpFile) {
    ErrorInfo info;
    info.description = text;
    info.source = String(from.source);
    info.interface = String(from.iid.name);
    if (helpContext != 0 && !helpFile.isEmpty()) {
        info.helpContext = helpContext;
        info.helpFile = helpFile;
    }
    current = std::move(info);
}

} // namespace

bool GetErrorInfo(ErrorInfo* out) {
    if (!current) return false;
    if (out) *out = std::move(*current);
    current.reset();
    return true;
}

void SetErrorInfo(const ErrorInfo& info) {
    current = info;
}
void ClearErrorInfo() {
    current.reset();
}

HRESULT reportError(const ErrorSource& from, std::uint32_t message, HRESULT status,
                    std::uint32_t helpContext, const String& helpFile) {
    std::string_view text = messageText(message);
    if (text.empty()) text = "Unknown Error";
    // Numbers of 65536 and above were pointers to texts in the original interface; here they are
    // simply unknown numbers, and the status stays as given.
    if (status == 0 && message < 65536) status = makeStatus(0x80040000u | message);
    install(from, String(text), helpContext, helpFile);
    return status == 0 ? DISP_E_EXCEPTION : status;
}

HRESULT reportError(const ErrorSource& from, const String& text, HRESULT status,
                    std::uint32_t helpContext, const String& helpFile) {
    install(from, text, helpContext, helpFile);
    return status == 0 ? DISP_E_EXCEPTION : status;
}

String formatInserts(std::string_view text, std::initializer_list<std::string_view> args) {
    std::string out;
    out.reserve(text.size() + 64);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
            std::size_t n = static_cast<std::size_t>(text[i + 1] - '1');
            std::size_t end = i + 2;
            // An insert may carry a format between exclamation marks: %1!S!.
            if (end < text.size() && text[end] == '!') {
                std::size_t close = text.find('!', end + 1);
                if (close != std::string_view::npos) end = close + 1;
            }
            if (n < args.size()) out += *(args.begin() + n);
            i = end - 1;
        } else {
            out += text[i];
        }
    }
    return String(std::move(out));
}

} // namespace qvr
