// The interfaces of XML: their exceptions, and the order of their virtual operations, which is part
// of the interface.

#include <zvutil/experimental/xml/abstract_xml_document_reader.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/basic_abstract_xml_document_writer.h>
#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include "support/StdString.h"

#include <QTest>

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

using namespace zvutil::experimental::xml;
using namespace std::string_literals;

namespace {

/// The place of a virtual operation in the virtual table, by the way in which GCC and Clang point to
/// members.
template <typename Member>
int slotOf(Member member)
{
    std::intptr_t offset = 0;
    static_assert(sizeof member >= sizeof offset);
    std::memcpy(&offset, &member, sizeof offset);
    return static_cast<int>((offset - 1) / static_cast<std::intptr_t>(sizeof(void*)));
}

template <typename C>
void checkWriterSlots()
{
    using Document = basic_abstract_xml_document_writer<C>;
    using Element = basic_abstract_xml_element_writer<C>;
    using WithLength = void (Element::*)(const C*, const C*, int);
    using WithoutLength = void (Element::*)(const C*, const C*);
    // A destructor takes the first two.
    QCOMPARE(slotOf(&Document::root_element), 2);
    QCOMPARE(slotOf(&Document::cancel_writing), 3);
    QCOMPARE(slotOf(&Element::destroy), 2);
    QCOMPARE(slotOf(&Element::child), 3);
    QCOMPARE(slotOf(static_cast<WithLength>(&Element::attribute)), 4);
    QCOMPARE(slotOf(static_cast<WithoutLength>(&Element::attribute)), 5);
    QCOMPARE(slotOf(&Element::text), 6);
}

template <typename Interface>
constexpr bool
    isInterface = std::is_abstract_v<Interface>&&
                      std::has_virtual_destructor_v<Interface> && sizeof(Interface) == sizeof(void*)
    && !std::is_copy_constructible_v<Interface>;

static_assert(isInterface<abstract_xml_document_reader>);
static_assert(isInterface<abstract_xml_element_reader>);
static_assert(isInterface<basic_abstract_xml_document_writer<char>>);
static_assert(isInterface<basic_abstract_xml_document_writer<char16_t>>);
static_assert(isInterface<basic_abstract_xml_document_writer<char32_t>>);
static_assert(isInterface<basic_abstract_xml_document_writer<wchar_t>>);
static_assert(isInterface<basic_abstract_xml_element_writer<char>>);
static_assert(isInterface<basic_abstract_xml_element_writer<char16_t>>);
static_assert(isInterface<basic_abstract_xml_element_writer<char32_t>>);
static_assert(isInterface<basic_abstract_xml_element_writer<wchar_t>>);

static_assert(std::is_base_of_v<zvutil::exception, xml_exception>);
static_assert(std::is_base_of_v<xml_exception, null_element_xml_exception>);
static_assert(std::is_base_of_v<xml_exception, attribute_not_found_xml_exception>);
static_assert(std::is_nothrow_copy_constructible_v<xml_exception>);
static_assert(std::is_nothrow_copy_constructible_v<null_element_xml_exception>);
static_assert(std::is_nothrow_copy_constructible_v<attribute_not_found_xml_exception>);

} // namespace

class tst_xml_interfaces : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<std::string>("actual");
        QTest::addColumn<std::string>("expected");
        const auto message = [](const std::exception& exception) {
            return std::string(exception.what());
        };
        QTest::newRow("xml_exception") << message(xml_exception("any text")) << "any text"s;
        QTest::newRow("xml_exception without text") << message(xml_exception("")) << ""s;
        QTest::newRow("null_element_xml_exception")
            << message(null_element_xml_exception()) << "null element xml exception"s;
        QTest::newRow("attribute_not_found_xml_exception")
            << message(attribute_not_found_xml_exception("n\xC3\xA4me")) << "n\xC3\xA4me"s;
        QTest::newRow("attribute_not_found_xml_exception without name")
            << message(attribute_not_found_xml_exception("")) << ""s;
    }

    void messages()
    {
        QFETCH(std::string, actual);
        QFETCH(std::string, expected);
        QCOMPARE(actual, expected);
    }

    void copiesCarryTheirText()
    {
        const null_element_xml_exception null;
        const attribute_not_found_xml_exception unknown("name");
        QCOMPARE(std::string(null_element_xml_exception(null).what()), std::string(null.what()));
        QCOMPARE(std::string(attribute_not_found_xml_exception(unknown).what()), "name"s);
        QCOMPARE(std::string(xml_exception(unknown).what()), "name"s);
    }

    void areCaughtAsTheirBases()
    {
        QVERIFY_EXCEPTION_THROWN(throw null_element_xml_exception(), xml_exception);
        QVERIFY_EXCEPTION_THROWN(throw attribute_not_found_xml_exception("a"), xml_exception);
        QVERIFY_EXCEPTION_THROWN(throw xml_exception("a"), zvutil::exception);
        QVERIFY_EXCEPTION_THROWN(throw xml_exception("a"), std::exception);
    }

    void virtualOperationsHaveTheirOrder()
    {
#if defined(_MSC_VER)
        QSKIP("Pointers to members don't tell their place here");
#else
        QCOMPARE(slotOf(&abstract_xml_document_reader::next_element), 2);
        QCOMPARE(slotOf(&abstract_xml_document_reader::root_element), 3);
        QCOMPARE(slotOf(&abstract_xml_element_reader::destroy), 2);
        QCOMPARE(slotOf(&abstract_xml_element_reader::name), 3);
        QCOMPARE(slotOf(&abstract_xml_element_reader::attribute), 4);
        QCOMPARE(slotOf(&abstract_xml_element_reader::text), 5);
        QCOMPARE(slotOf(&abstract_xml_element_reader::next_child), 6);
        checkWriterSlots<char>();
        checkWriterSlots<char16_t>();
        checkWriterSlots<char32_t>();
        checkWriterSlots<wchar_t>();
#endif
    }
};

QTEST_APPLESS_MAIN(tst_xml_interfaces)
#include "tst_xml_interfaces.moc"
