// The library's public interface: include this one header.
#pragma once

#include <qvr/catalog.h>
#include <qvr/classification.h>
#include <qvr/com.h>
#include <qvr/contact.h>
#include <qvr/content.h>
#include <qvr/dom.h>
#include <qvr/error_info.h>
#include <qvr/events.h>
#include <qvr/media.h>
#include <qvr/object.h>
#include <qvr/object_list.h>
#include <qvr/order.h>
#include <qvr/reference.h>
#include <qvr/server.h>
#include <qvr/stream.h>
#include <qvr/string.h>
#include <qvr/supplier.h>
#include <qvr/table.h>
#include <qvr/table_cache.h>
#include <qvr/table_cells.h>
#include <qvr/table_columns.h>
#include <qvr/transfer.h>
#include <qvr/variant.h>
