#include "app/cli/Consola.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;

/// What anybody's text may do to the terminal of a command: nothing.
class PruebaConsola : public QObject
{
    Q_OBJECT

private slots:
    void loQueMandaNoLlega_data();
    void loQueMandaNoLlega();
    void loDemasSeQueda();

private:
    /// What is written to a stream meanwhile.
    static QByteArray escrito(std::FILE *salida, const std::function<void()> &hacer)
    {
        const QTemporaryDir carpeta;
        const auto nombre = QFile::encodeName(carpeta.filePath(u"salida"_s));
        std::fflush(salida);
        const int suyo = fileno(salida);
        const int guardado = dup(suyo);
        const int aqui = open(nombre.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        dup2(aqui, suyo);
        close(aqui);
        hacer();
        std::fflush(salida);
        dup2(guardado, suyo);
        close(guardado);
        QFile fichero(carpeta.filePath(u"salida"_s));
        return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray("(nada)");
    }
};

void PruebaConsola::loQueMandaNoLlega_data()
{
    QTest::addColumn<QString>("malo");
    QTest::newRow("clear the screen") << u"\x1b[2J"_s;
    QTest::newRow("another title") << u"\x1b]0;otro\x07"_s;
    QTest::newRow("one byte for two") << u"\u009b31m"_s;
    QTest::newRow("back over what was written") << u"\b\b\b\r\x7f"_s;
    QTest::newRow("nothing at all") << QString(QChar::Null);
    QTest::newRow("turned around") << u"\u202Egnp.exe\u2066x\u2028y"_s;
}

void PruebaConsola::loQueMandaNoLlega()
{
    QFETCH(const QString, malo);
    const auto texto = u"antes "_s + malo + u" después"_s;
    const auto salidas = {
        escrito(stdout, [&] { Consola::resultado(texto); }),
        escrito(stdout,
                [&] {
                    Consola::resultado(QStringList{texto, texto + u"\n\t"_s});
                }),
        escrito(stdout, [&] { Consola::resultado(QJsonDocument(QJsonArray{texto})); }),
        escrito(stderr, [&] { Consola::palabras(texto); }),
    };
    for (const auto &salida : salidas) {
        QVERIFY(salida.startsWith("antes ") || salida.startsWith("[\n"));
        QVERIFY(salida.contains("después"));
        for (const auto letra : QString::fromUtf8(salida)) {
            const auto numero = letra.unicode();
            const bool manda = numero < 0x20 || (numero >= 0x7F && numero < 0xA0) ||
                               (numero >= 0x2028 && numero <= 0x202E) || (numero >= 0x2066 && numero <= 0x2069);
            QVERIFY2(!manda || letra == u'\n' || letra == u'\t', qPrintable(QString::number(numero, 16)));
        }
    }
    // A field has no line and no tab of its own, and what is read back as JSON is what was written.
    QCOMPARE((salidas.begin() + 1)->count('\n'), 1);
    QCOMPARE((salidas.begin() + 1)->count('\t'), 1);
    QCOMPARE(QJsonDocument::fromJson(*(salidas.begin() + 2)).array().first().toString(), texto);
}

void PruebaConsola::loDemasSeQueda()
{
    const auto texto = u"Ñandú 👨‍👩‍👧 مرحبا «x»\nsegunda línea"_s;
    QCOMPARE(escrito(stdout, [&] { Consola::resultado(texto); }), (texto + u'\n').toUtf8());
    QCOMPARE(escrito(stdout, [&] { Consola::resultado(QStringList{u"a"_s, u"ñ"_s}); }), "a\tñ\n");
}

QTEST_GUILESS_MAIN(PruebaConsola)
#include "PruebaConsola.moc"
