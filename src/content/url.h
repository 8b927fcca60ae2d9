// An address with its XLink attributes and an optional language. It takes no children; its key
// is its language, or while it has none a text the wrapper made up.
#pragma once

#include <qvr/media.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/iso_codes.h"
#include "core/xlink_words.h"

namespace qvr {

class CQVRCatalogURL final : public CatalogObject<IQVRCatalogURL, qvrURL> {
public:
    HRESULT get_title(String* title) override {
        return accessors::getAttribute(*this, "xlink:title", title);
    }
    HRESULT put_title(const String& title) override {
        return accessors::putClearableAttribute(*this, "xlink:title", title);
    }
    HRESULT get_lang(String* language) override {
        return accessors::getAttribute(*this, "xml:lang", language);
    }
    // One target per language: the code is the URL's key among its siblings.
    HRESULT put_lang(const String& language) override {
        return accessors::putKeyAttribute(*this, "xml:lang", language, &isLanguageCode,
                                          msgBadLanguageCode);
    }
    HRESULT get_href(String* href) override {
        return accessors::getReferenceAttribute(*this, "xlink:href", href);
    }
    HRESULT put_href(const String& href) override {
        return accessors::putReferenceAttribute(*this, "xlink:href", href);
    }
    HRESULT get_actuate(QVRURLActuate* actuate) override {
        return accessors::getNumberedAttribute(*this, "xlink:actuate", xlinkActuateWords, actuate);
    }
    HRESULT put_actuate(QVRURLActuate actuate) override {
        return accessors::putNumberedAttribute(*this, "xlink:actuate", xlinkActuateWords, actuate);
    }
    HRESULT get_role(String* role) override {
        return accessors::getAttribute(*this, "xlink:role", role);
    }
    HRESULT put_role(const String& role) override {
        return accessors::putClearableAttribute(*this, "xlink:role", role);
    }
    HRESULT get_show(QVRURLShow* show) override {
        return accessors::getNumberedAttribute(*this, "xlink:show", xlinkShowWords, show);
    }
    HRESULT put_show(QVRURLShow show) override {
        return accessors::putNumberedAttribute(*this, "xlink:show", xlinkShowWords, show);
    }
    HRESULT get_type(QVRURLType* type) override {
        return accessors::getNumberedAttribute(*this, "xlink:type", types, type);
    }
    HRESULT put_type(QVRURLType type) override {
        return accessors::putNumberedAttribute(*this, "xlink:type", types, type);
    }

    // A new URL, as the roots make it: its address, title and language, then the type "simple".
    // The first failure ends it.
    HRESULT fillNew(const String& href, const String& title, const String& language) {
        HRESULT hr;
        if (FAILED(hr = put_href(href)) || FAILED(hr = put_title(title)) ||
            FAILED(hr = put_lang(language)))
            return hr;
        return put_type(qvrTypeSimple);
    }

private:
    // The texts of `xlink:type`, at the index of their numbers.
    static constexpr const char* types[] = {"simple",   "extended", "locator", "arc",
                                            "resource", "title",    "none"};
};

} // namespace qvr
