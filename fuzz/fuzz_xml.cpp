// Any bytes as a document that is read by a caller whom other bytes drive: it is given the same as by
// the plain rules, which read what they skip.

#include "impl/xml/qt_stream_xml_document_reader.h"

#include "support/RecursiveXmlReader.h"
#include "support/XmlCaller.h"

#include <QBuffer>
#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

struct Script
{
    const std::uint8_t* bytes;
    std::size_t size;
};

void require(bool condition)
{
    if (!condition)
        std::abort();
}

template <typename Document>
std::string logOf(const QByteArray& bytes, const Script& script)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    Document document(&buffer);
    std::string log;
    {
        zvtest::XmlCaller caller(document);
        for (std::size_t i = 0; i < script.size; ++i)
            caller.step(script.bytes[i]);
        log = caller.log();
    }
    // All that the caller has held has gone; what is left has to be the same.
    while (const auto element = document.next_element())
        log += element->name();
    return log;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The first byte is the length of the script, which follows; the rest is the document.
    const Script script = {data + 1, std::min<std::size_t>(data[0], size - 1)};
    const std::size_t start = 1 + script.size;
    const QByteArray document(reinterpret_cast<const char*>(data + start),
                              static_cast<int>(size - start));
    using zvtest::RecursiveDocument;
    using zvutil::experimental::xml::qt_stream_xml_document_reader;
    require(logOf<qt_stream_xml_document_reader>(document, script)
            == logOf<RecursiveDocument>(document, script));
    return 0;
}
