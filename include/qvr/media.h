// Links and media: the elements through which a catalog points at the outside world.
//
// A `URL` carries an address and its XLink attributes (title, role, how it is shown and when it is
// followed) and optionally a language. URLs hang under a `Link`, an `Image`, a `Document` or a
// view's `XRefFiles`, which offer one target per language: a second URL of a language that a
// sibling has already is refused, a URL without a language never clashes. `Images` and
// `Documents` group images and documents. No container of these kinds gives up its last child:
// "You can't remove the last child of this object." with E_FAIL.
#pragma once

#include <cstdint>

#include <qvr/object.h>

namespace qvr {

// `xlink:actuate`: when the target is fetched. A stored text outside these reads as undefined.
enum QVRURLActuate : std::int32_t {
    qvrActuateOnLoad = 0,    // "onLoad"
    qvrActuateOnRequest = 1, // "onRequest"
    qvrActuateUndefined = 2, // "undefined"
};

// `xlink:show`: where the target appears. A stored text outside these reads as undefined.
enum QVRURLShow : std::int32_t {
    qvrShowNew = 0,       // "new"
    qvrShowReplace = 1,   // "replace"
    qvrShowEmbed = 2,     // "embed"
    qvrShowUndefined = 3, // "undefined"
};

// `xlink:type`. A stored text outside these reads as none.
enum QVRURLType : std::int32_t {
    qvrTypeSimple = 0,   // "simple"
    qvrTypeExtended = 1, // "extended"
    qvrTypeLocator = 2,  // "locator"
    qvrTypeArc = 3,      // "arc"
    qvrTypeResource = 4, // "resource"
    qvrTypeTitle = 5,    // "title"
    qvrTypeNone = 6,     // "none"
};

// One address. Its key is its language when it has one, else a text the wrapper made up (a new
// one for every wrapper). Takes no children.
class QVR_API IQVRCatalogURL : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogURL)

    // An empty or null title removes `xlink:title`.
    virtual HRESULT get_title(String* title) = 0;
    virtual HRESULT put_title(const String& title) = 0;
    // `xml:lang`: two lower-case letters ("This is not a valid ISO 639 language code." else), not
    // held by a sibling ("A child with the same id already exists."). Empty or null removes it.
    virtual HRESULT get_lang(String* language) = 0;
    virtual HRESULT put_lang(const String& language) = 0;
    // `xlink:href`, kept in URL form: a URL stays as given, an absolute path becomes a file URL,
    // a relative path keeps its form with forward slashes. A null address is E_INVALIDARG.
    virtual HRESULT get_href(String* href) = 0;
    virtual HRESULT put_href(const String& href) = 0;
    virtual HRESULT get_actuate(QVRURLActuate* actuate) = 0;
    // A value outside the enumeration is E_INVALIDARG, as for put_show and put_type.
    virtual HRESULT put_actuate(QVRURLActuate actuate) = 0;
    // An empty or null role removes `xlink:role`.
    virtual HRESULT get_role(String* role) = 0;
    virtual HRESULT put_role(const String& role) = 0;
    virtual HRESULT get_show(QVRURLShow* show) = 0;
    virtual HRESULT put_show(QVRURLShow show) = 0;
    virtual HRESULT get_type(QVRURLType* type) = 0;
    virtual HRESULT put_type(QVRURLType type) = 0;
};

// URLs, one per language. A duplicate language: "A child with the same id already exists.".
class QVR_API IQVRCatalogLink : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogLink)
};

// URLs, one per language. A duplicate language answers QVR_E_DUPLICATE and reports nothing.
class QVR_API IQVRCatalogImage : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogImage)
};

// Images side by side, without a key.
class QVR_API IQVRCatalogImages : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogImages)
};

// A named document: URLs, one per language. An empty or null name removes `name`.
class QVR_API IQVRCatalogDocument : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogDocument)

    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
};

// A named group of documents side by side, without a key. An empty or null name removes `name`.
class QVR_API IQVRCatalogDocuments : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogDocuments)

    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
};

// The further files of a view (`XRefFiles`): URLs, one per language.
class QVR_API IQVRCatalogReferencedFiles : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogReferencedFiles)
};

} // namespace qvr
