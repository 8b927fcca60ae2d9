// An address with its XLink attributes and an optional language. It takes no children; its key
// is its language, or while it has none a text the wrapper made up.
#pragma once

#include <qvr/media.h>

#include "core/accessors.h"
#include "core/catalog_object.h"
#include "core/iso_codes.h"

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
        return accessors::getNumberedAttribute(*this, "xlink:actuate", actuates, actuate);
    }
    HRESULT put_actuate(QVRURLActuate actuate) override {
        return accessors::putNumberedAttribute(*this, "xlink:actuate", actuates, actuate);
    }
    HRESULT get_role(String* role) override {
        return accessors::getAttribute(*this, "xlink:role", role);
    }
    HRESULT put_role(const String& role) override {
        return accessors::putClearableAttribute(*this, "xlink:role", role);
    }
    HRESULT get_show(QVRURLShow* show) override {
        return accessors::getNumberedAttribute(*this, "xlink:show", shows, show);
    }
    HRESULT put_show(QVRURLShow show) override {
        return accessors::putNumberedAttribute(*this, "xlink:show", shows, show);
    }
    HRESULT get_type(QVRURLType* type) override {
        return accessors::getNumberedAttribute(*this, "xlink:type", types, type);
    }
    HRESULT put_type(QVRURLType type) override {
        return accessors::putNumberedAttribute(*this, "xlink:type", types, type);
    }

private:
    // The texts of the three numbered attributes, at the index of their numbers.
    static constexpr const char* actuates[] = {"onLoad", "onRequest", "undefined"};
    static constexpr const char* shows[] = {"new", "replace", "embed", "undefined"};
    static constexpr const char* types[] = {"simple",   "extended", "locator", "arc",
                                            "resource", "title",    "none"};
};

} // namespace qvr
