// The namespace URIs of the library's documents.
#pragma once

#define VOSMERE_NAMESPACE_VSM "http://www.vosmere.example/schema/vsm"
#define VOSMERE_NAMESPACE_SEARCH_ENGINE "http://www.vosmere.example/searchengine"
#define VOSMERE_NAMESPACE_TOOLBAR "http://www.vosmere.example/toolbar"
#define VOSMERE_NAMESPACE_DC "http://purl.org/dc/elements/1.1/"
#define VOSMERE_NAMESPACE_SX "http://www.microsoft.com/schemas/rss/sse"

// The attributes that declare the prefixes in documents of items, each preceded by a blank.
#define VOSMERE_ITEM_PREFIXES                                                 \
  " xmlns:vsm=\"" VOSMERE_NAMESPACE_VSM "\" xmlns:dc=\"" VOSMERE_NAMESPACE_DC \
  "\" xmlns:sx=\"" VOSMERE_NAMESPACE_SX "\""
