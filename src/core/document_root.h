// What the two roots of the model (the catalog and the table) share: a whole document in place
// of an element, the sinks that hear every change of their tree, the address the document came
// from and the folder its references resolve against. RootObject (core/root_object.h) makes a
// root class out of its interface; this class holds the state and the steps both roots take.
#pragma once

#include <cstdint>
#include <string_view>

#include <qvr/dom.h>

#include "core/event_sinks.h"
#include "core/object_core.h"

namespace qvr {

class DocumentRoot : public ObjectCore {
public:
    DocumentRoot(const ClassInfo& info, const IID& iid, EventSide side)
        : ObjectCore(info, iid), sinks_(side) {}

    IXMLDOMDocument* document() const { return document_.get(); }

protected:
    // An attribute of the root element: absent gives S_FALSE and leaves `value` alone.
    HRESULT readRootAttribute(const char* name, String* value) noexcept;
    // The root's language: two lower-case letters (else "This is not a valid ISO 639 language
    // code."), written to `xml:lang`; the change climbs to the sinks like an object's.
    HRESULT writeLanguage(const String& language) noexcept;
    // Makes a document when there is none; a failure reports `message` under the failing status.
    HRESULT ensureDocument(std::uint32_t message);
    // The end of a load that did not parse: the parse error's text, reported under `status`.
    HRESULT reportParseFailure(HRESULT status);
    // Reads the document element into `root` and compares its tag with `tag`, case-sensitively;
    // another tag reports `message` under `status` (and `root` keeps the foreign element).
    HRESULT checkRootTag(const char* tag, std::uint32_t message, HRESULT status,
                         Ref<IXMLDOMElement>* root);
    // Remembers whether the last load left the file's content in the document: a load that
    // failed (unreadable, malformed, another root) leaves an empty or a foreign document, and
    // saving that over a file would destroy the file. Answers `status`.
    HRESULT rememberLoad(HRESULT status) {
        loadFailed_ = status != S_OK;
        return status;
    }
    // A new document of the root's own kind (create) may be saved again.
    void forgetFailedLoad() { loadFailed_ = false; }
    // S_OK when the document may be saved to `target`; after a failed load a report that names
    // the target and E_FAIL.
    HRESULT checkSavable(const Variant& target);
    // Appends the declaration and the product and copyright comments that open a new document.
    HRESULT writePrologue(const char* productComment);
    // After a load: the folder of the document's URL (up to its last "/") becomes the base; a URL
    // without "/" leaves the base as it was. Answers the status of asking for the URL.
    HRESULT baseFromDocumentUrl();
    // The base in URL form (a stored path is converted and stored first), copied to `baseUrl`.
    HRESULT handOutBaseUrl(String* baseUrl);
    // Closes a newly stored base with "/" unless it is empty or `given` ended in a separator.
    void closeBaseUrl(std::string_view given);

    // The `version` text read as a double, handed out as the low half of its bits taken as a
    // float: "1.2" gives about 4.17e-08. Callers compare it with another such reading.
    static HRESULT versionOf(const String& text, float* version);

    Ref<IXMLDOMDocument> document_;
    Variant url_;    // where the document was loaded from or last saved to
    String baseUrl_; // the folder of the document, closed with "/"
    EventSinks sinks_;

private:
    bool loadFailed_ = false;
};

} // namespace qvr
