// The XML helper: documents, nodes, lists and a subset of XPath over the parser's DOM, with UTF-8 texts.
#ifndef SOAPWRAPPER_XMLHELPER_XMLHELPER_H
#define SOAPWRAPPER_XMLHELPER_XMLHELPER_H

#include "xmlhelper/document.h"
#include "xmlhelper/node.h"
#include "xmlhelper/node_list.h"
#include "xmlhelper/text_node.h"
#include "xmlhelper/transcoding.h"
#include "xmlhelper/xml_status.h"
#include "xmlhelper/xpath.h"

#endif
