// The library's public interface: include this one header.
#pragma once

#include <qvr/com.h>
#include <qvr/dom.h>
#include <qvr/error_info.h>
#include <qvr/string.h>
#include <qvr/variant.h>
