// The files of a gateway's books, divided by form feeds: read whole or refused with the place of every error, and
// books that are read survive being written and read again.
#include "BookFiles.h"
#include "Books.h"
#include "BooksWriter.h"
#include "Input.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

namespace {

QStringList files()
{
    using namespace BookFiles;
    static const QStringList names{ticks(),  sessions(),  instruments(), accounts(), users(),  positions(),
                                   margin(), resources(), pools(),       carried(),  quotes(), safety()};
    return names;
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "a file cannot be written:", path);
}

/// A file that the input has no part for is missing.
void writeParts(const QTemporaryDir &folder, const QList<QByteArray> &parts)
{
    for (int i = 0; i < files().size(); ++i) {
        const QString path = folder.filePath(files().at(i));
        if (i < parts.size())
            write(path, parts.at(i));
        else
            QFile::remove(path);
    }
}

void checkErrors(const QVector<BookError> &errors)
{
    require(!errors.isEmpty(), "books were refused without an error");
    for (const BookError &error : errors)
        require(files().contains(error.file) && !error.column.isEmpty() && !error.expected.isEmpty() && error.row >= 0,
                "an error does not say where and what:", error.toText());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    static const QTemporaryDir given;
    static const QTemporaryDir written;
    writeParts(given, QByteArray(reinterpret_cast<const char *>(data), int(size)).split('\f'));
    const Books::Loaded loaded = Books::load(given.path());
    if (!loaded.books) {
        checkErrors(loaded.errors);
        return 0;
    }
    const QMap<QString, QByteArray> first = BooksWriter::files(*loaded.books);
    for (auto file = first.cbegin(); file != first.cend(); ++file)
        write(written.filePath(file.key()), *file);
    const Books::Loaded again = Books::load(written.path());
    require(again.books.has_value(),
            "written books are refused:", again.errors.isEmpty() ? QString() : again.errors.first().toText());
    require(BooksWriter::files(*again.books) == first, "books did not survive being written and read");
    return 0;
}
