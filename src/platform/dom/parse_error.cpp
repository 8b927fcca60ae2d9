#include "platform/dom/parse_error.h"

#include "platform/com/failure.h"

namespace qvr::dom {
namespace {

template <class T>
HRESULT handOut(T* out, const T& value) {
    if (!out) return E_POINTER;
    return guarded([&] {
        *out = value;
        return S_OK;
    });
}

} // namespace

HRESULT ParseError::get_errorCode(std::int32_t* code) {
    return handOut(code, record_.code);
}
HRESULT ParseError::get_url(String* url) {
    return handOut(url, record_.url);
}
HRESULT ParseError::get_reason(String* reason) {
    return handOut(reason, record_.reason);
}
HRESULT ParseError::get_srcText(String* text) {
    return handOut(text, record_.srcText);
}
HRESULT ParseError::get_line(std::int32_t* line) {
    return handOut(line, record_.line);
}
HRESULT ParseError::get_linepos(std::int32_t* position) {
    return handOut(position, record_.linepos);
}
HRESULT ParseError::get_filepos(std::int32_t* position) {
    return handOut(position, record_.filepos);
}

} // namespace qvr::dom
