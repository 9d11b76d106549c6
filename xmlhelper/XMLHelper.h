// The XML helper: documents, nodes, lists and a subset of XPath over the parser's DOM, with UTF-8 texts.
#ifndef SOAPWRAPPER_XMLHELPER_XMLHELPER_H
#define SOAPWRAPPER_XMLHELPER_XMLHELPER_H

#include "xmlhelper/document.h"    // IWYU pragma: export
#include "xmlhelper/dom_text.h"    // IWYU pragma: export
#include "xmlhelper/node.h"        // IWYU pragma: export
#include "xmlhelper/node_list.h"   // IWYU pragma: export
#include "xmlhelper/text_node.h"   // IWYU pragma: export
#include "xmlhelper/transcoding.h" // IWYU pragma: export
#include "xmlhelper/xml_status.h"  // IWYU pragma: export
#include "xmlhelper/xpath.h"       // IWYU pragma: export

#endif
