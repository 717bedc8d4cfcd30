#include "propertylists/XmlGuard.h"

#include <algorithm>

#include "propertylists/PropertyListScalars.h"

namespace {

constexpr std::size_t kLongestTag = 256;

/// Past the next `end`, or past everything.
std::size_t after(std::string_view xml, std::size_t from, std::string_view end) {
    const std::size_t found = xml.find(end, from);
    return found == xml.npos ? xml.size() : found + end.size();
}

/// Past the '>' that ends a tag or a document type; one within quotation marks does not.
std::size_t afterMarkup(std::string_view xml, std::size_t start, bool isDocumentType) {
    for (std::size_t at = start + 1; at < xml.size(); ++at) {
        if (!isDocumentType && at - start > kLongestTag)
            throw PropertyListRefusal{"a tag of more than 256 bytes"};
        if (xml[at] == '[' && isDocumentType)
            throw PropertyListRefusal{"a document type with entity or other declarations"};
        if (xml[at] == '"' || xml[at] == '\'')
            at = std::min(xml.find(xml[at], at + 1), xml.size());
        else if (xml[at] == '>')
            return at + 1;
    }
    if (!isDocumentType && xml.size() - start > kLongestTag)
        throw PropertyListRefusal{"a tag of more than 256 bytes"};
    return xml.size();
}

}  // namespace

void guardXml(std::string_view xml, std::size_t& position) {
    while ((position = std::min(xml.find('<', position), xml.size())) < xml.size()) {
        const std::string_view rest = xml.substr(position);
        if (rest.starts_with("<!--"))
            position = after(xml, position + 4, "-->");
        else if (rest.starts_with("<![CDATA["))
            position = after(xml, position + 9, "]]>");
        else if (rest.starts_with("<?"))
            position = after(xml, position + 2, "?>");
        else
            position = afterMarkup(xml, position, rest.starts_with("<!"));
    }
}
