// The record of what went wrong in a document's last load: all zero and empty after a load that
// worked.
#pragma once

#include <cstdint>

#include <qvr/dom.h>

#include "platform/com/object_base.h"

namespace qvr::dom {

struct ParseErrorRecord {
    std::int32_t code = 0;
    String url = String("");
    String reason = String("");
    String srcText = String("");
    std::int32_t line = 0;
    std::int32_t linepos = 0;
    std::int32_t filepos = 0;
};

class ParseError : public ObjectBase<IXMLDOMParseError> {
public:
    explicit ParseError(ParseErrorRecord record) : record_(std::move(record)) {}

    HRESULT get_errorCode(std::int32_t* code) override;
    HRESULT get_url(String* url) override;
    HRESULT get_reason(String* reason) override;
    HRESULT get_srcText(String* text) override;
    HRESULT get_line(std::int32_t* line) override;
    HRESULT get_linepos(std::int32_t* position) override;
    HRESULT get_filepos(std::int32_t* position) override;

private:
    ParseErrorRecord record_;
};

} // namespace qvr::dom
