// Saves where the test itself had better not: until it is killed, as another user, without space.
//
//   xml_saver loop PATH               one document after the other; tells the number of each
//   xml_saver once PATH               one document; tells whether commit says that it worked
//   xml_saver limited PATH BYTES      the same, but no file may become larger
//   xml_saver limited PATH BYTES TYPE PIECE LENGTH
//                                     the same with one long text
//   xml_saver unprivileged PATH       the same as a user who may do nothing
//   xml_saver full FOLDER BYTES       the same into a file system mounted there that has little space,
//                                     then the length of the target, which has 4 bytes before
//   xml_saver full FOLDER BYTES TYPE PIECE LENGTH
//                                     the same with one long text, twice, and space for its
//                                     beginning
//
// TYPE is char, char16_t, char32_t or wchar_t, PIECE text or attribute.
// Where a mode can't be had here it tells "skip".

#include <zvutil/ZvBasicXMLSaveFile.h>

#include "support/RefusedWrite.h"
#include "support/XmlGeneration.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>

#if defined(Q_OS_UNIX)
#include <unistd.h>
#endif
#if defined(Q_OS_LINUX)
#include <sched.h>
#include <sys/mount.h>
#endif

namespace {

class Saver : public ZvBasicXMLSaveFile<char>
{
public:
    explicit Saver(const QString& path)
        : ZvBasicXMLSaveFile(path.toStdWString())
    {
    }

    bool save(int generation)
    {
        zvtest::writeGeneration(writer(), generation);
        return commit();
    }
};

template <typename C>
class LongText : public ZvBasicXMLSaveFile<C>
{
public:
    explicit LongText(const QString& path)
        : ZvBasicXMLSaveFile<C>(path.toStdWString())
    {
    }

    bool save(const QString& piece, std::size_t length)
    {
        const C name[] = {C('r'), C()};
        const std::basic_string<C> text(length, C('x'));
        const auto root = this->writer().root_element(name);
        if (piece == QLatin1String("attribute"))
            root->attribute(name, text.c_str());
        else
            root->text(text.c_str());
        return this->commit();
    }
};

/// What is saved: one of the documents above, or a long text as the arguments say.
using Save = std::function<bool(const QString& target)>;

Save documentOf(int generation)
{
    return [generation](const QString& target) { return Saver(target).save(generation); };
}

template <typename C>
Save longText(const QString& piece, std::size_t length)
{
    return [=](const QString& target) { return LongText<C>(target).save(piece, length); };
}

Save longText(const QString& type, const QString& piece, std::size_t length)
{
    if (type == QLatin1String("char16_t"))
        return longText<char16_t>(piece, length);
    if (type == QLatin1String("char32_t"))
        return longText<char32_t>(piece, length);
    if (type == QLatin1String("wchar_t"))
        return longText<wchar_t>(piece, length);
    return longText<char>(piece, length);
}

/// A document of many blocks.
constexpr int large = 39;

void tell(const char* text)
{
    std::puts(text);
    std::fflush(stdout);
}

void tell(bool committed)
{
    tell(committed ? "true" : "false");
}

[[noreturn]] void loop(const QString& path)
{
    for (int generation = 1;; ++generation) {
        if (Saver(path).save(generation))
            tell(std::to_string(generation).c_str());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

bool dropPrivileges()
{
#if defined(Q_OS_UNIX)
    constexpr unsigned nobody = 65534;
    return getuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0);
#else
    return false;
#endif
}

/// In a namespace of its own, so that the mount goes with this process.
bool mountSmall(const QString& folder, const QString& bytes)
{
#if defined(Q_OS_LINUX)
    return unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && mount("none", qPrintable(folder), "tmpfs", 0, qPrintable(QLatin1String("size=") + bytes))
        == 0;
#else
    Q_UNUSED(folder)
    Q_UNUSED(bytes)
    return false;
#endif
}

/// Leaves so many pages for both saves.
void saveIntoLittleSpace(const QString& target, int pages, const Save& first, const Save& second)
{
    QFile file(target);
    file.open(QIODevice::WriteOnly);
    file.write("old\n");
    file.close();
    QFile filler(target + QLatin1String(".filler"));
    filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    const QByteArray page(4096, 'x');
    while (filler.write(page) == page.size()) { }
    filler.resize(filler.size() - pages * page.size());
    tell(first(target));
    tell(second(target));
    tell(std::to_string(QFileInfo(target).size()).c_str());
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 2)
        return 1;
    const QString& mode = arguments[0];
    const QString& path = arguments[1];
    const bool isLongText = arguments.size() > 3;
    const Save text =
        longText(arguments.value(3), arguments.value(4), arguments.value(5).toULong());
    if (mode == QLatin1String("loop"))
        loop(path);
    if (mode == QLatin1String("full")) {
        if (mountSmall(path, arguments.value(2)))
            saveIntoLittleSpace(path + QLatin1String("/a.xml"), isLongText ? 3 : 0,
                                isLongText ? text : documentOf(large),
                                isLongText ? text : documentOf(0));
        else
            tell("skip");
        return 0;
    }
    std::optional<zvtest::RefusedWrite> limited;
    if (mode == QLatin1String("limited"))
        limited.emplace(arguments.value(2).toInt());
    const bool prepared = mode == QLatin1String("once") || limited
        || (mode == QLatin1String("unprivileged") && dropPrivileges());
    if (!prepared)
        tell("skip");
    else
        tell(isLongText ? text(path) : documentOf(large)(path));
    return 0;
}
