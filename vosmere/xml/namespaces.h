// The namespace URIs of the library's documents.
#pragma once

#define VOSMERE_NAMESPACE_VSM "http://www.vosmere.example/schema/vsm"
#define VOSMERE_NAMESPACE_DC "http://purl.org/dc/elements/1.1/"
#define VOSMERE_NAMESPACE_SX "http://www.microsoft.com/schemas/rss/sse"
