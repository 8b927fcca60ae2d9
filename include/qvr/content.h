// The tree of a catalog: chapters hold chapters and parts; a part describes one manufactured item
// and refers to the table document that holds its data.
//
// Both carry an `id` (a GUID text, their key), a `name`, a `visible` flag, a description and
// optional groups that stand in a fixed order below them: Desc, Images, Link, Documents,
// (ActiveXs), Extrinsics, and for a part OrderInfo, Classifications and last the TableRef. A
// group set through a putref_* operation lands at its place in that order; any object may be
// given, and it lands there whatever its kind.
#pragma once

#include <cstdint>

#include <qvr/classification.h>
#include <qvr/media.h>
#include <qvr/object.h>
#include <qvr/order.h>

namespace qvr {

class QVR_API IQVRCatalogChapter : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogChapter)

    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    // Absent attribute: S_FALSE and true. Only VARIANT_TRUE (-1) writes "1"; any other value "0".
    virtual HRESULT get_visible(VARIANT_BOOL* visible) = 0;
    virtual HRESULT put_visible(VARIANT_BOOL visible) = 0;
    virtual HRESULT get_desc(String* desc) = 0;
    // Sets the text of the existing Desc child; without one: S_FALSE, nothing is created.
    virtual HRESULT put_desc(const String& desc) = 0;
    virtual HRESULT get_images(Ref<IQVRCatalogImages>* images) = 0;
    virtual HRESULT putref_images(IQVRCatalogObject* images) = 0;
    virtual HRESULT get_link(Ref<IQVRCatalogLink>* link) = 0;
    virtual HRESULT putref_link(IQVRCatalogObject* link) = 0;
    virtual HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) = 0;
    virtual HRESULT putref_documents(IQVRCatalogObject* documents) = 0;
    virtual HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) = 0;
};

class QVR_API IQVRCatalogPart : public IQVRCatalogObject {
public:
    QVR_INTERFACE_ID(IQVRCatalogPart)

    virtual HRESULT get_desc(String* desc) = 0;
    virtual HRESULT put_desc(const String& desc) = 0;
    virtual HRESULT get_name(String* name) = 0;
    virtual HRESULT put_name(const String& name) = 0;
    virtual HRESULT get_visible(VARIANT_BOOL* visible) = 0;
    virtual HRESULT put_visible(VARIANT_BOOL visible) = 0;
    virtual HRESULT get_documents(Ref<IQVRCatalogDocuments>* documents) = 0;
    virtual HRESULT putref_documents(IQVRCatalogObject* documents) = 0;
    virtual HRESULT get_images(Ref<IQVRCatalogImages>* images) = 0;
    virtual HRESULT putref_images(IQVRCatalogObject* images) = 0;
    virtual HRESULT get_link(Ref<IQVRCatalogLink>* link) = 0;
    virtual HRESULT putref_link(IQVRCatalogObject* link) = 0;
    // The file reference of the part's table (TableRef/URL, xlink:href). Empty means none and
    // answers S_FALSE.
    virtual HRESULT get_tableRef(String* tableRef) = 0;
    virtual HRESULT put_tableRef(const String& tableRef) = 0;
    virtual HRESULT getTable(std::int32_t reserved, Ref<IQVRCatalogTable>* table) = 0;
    virtual HRESULT get_classifications(Ref<IQVRCatalogClassifications>* classifications) = 0;
    virtual HRESULT putref_classifications(IQVRCatalogObject* classifications) = 0;
    virtual HRESULT get_orderInfo(Ref<IQVRCatalogOrderInfo>* orderInfo) = 0;
    virtual HRESULT putref_orderInfo(IQVRCatalogObject* orderInfo) = 0;
    virtual HRESULT setTableLocation(const String& baseDirectory, const String& relativeDirectory,
                                     const String& fileName) = 0;
    virtual HRESULT attachTable(IQVRCatalogTable* table) = 0;
    virtual HRESULT get_extrinsics(Ref<IQVRCatalogExtrinsics>* extrinsics) = 0;
    virtual HRESULT putref_extrinsics(IQVRCatalogObject* extrinsics) = 0;
};

} // namespace qvr
