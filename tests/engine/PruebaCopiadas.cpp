#include "engine/roll/Copiadas.h"
#include "support/BaseDePrueba.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;
using namespace vellora::motor;

/// Names of the roll, and what is already in a folder by its names and its notes, whatever stands in them.
class PruebaCopiadas : public QObject
{
    Q_OBJECT

private slots:
    void sitios_data();
    void sitios();
    void elementos_data();
    void elementos();
    void notasRotas();
    void sinCarpeta();

private:
    static FicheroDelCarrete foto(const QByteArray &relativa, qint64 tamano, qint64 ms)
    {
        FichaAfc ficha;
        ficha.tipo = FichaAfc::Tipo::Fichero;
        ficha.tamano = tamano;
        ficha.modificado = QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
        return {u"/DCIM/"_s + QString::fromUtf8(relativa), relativa, ficha};
    }
};

void PruebaCopiadas::sitios_data()
{
    QTest::addColumn<QString>("ruta");
    QTest::addColumn<QByteArray>("sitio"); // empty: none
    QTest::newRow("photo") << u"/DCIM/100APPLE/IMG_0001.HEIC"_s << QByteArray("100APPLE/IMG_0001.HEIC");
    QTest::newRow("edit") << u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0001/Adjustments/FullSizeRender.heic"_s
                          << QByteArray("100APPLE/IMG_E0001.HEIC");
    QTest::newRow("edit of a file of another name")
        << u"/PhotoData/Mutations/DCIM/100APPLE/GOPR12/Adjustments/FullSizeRender.mov"_s
        << QByteArray("100APPLE/GOPR12_E.MOV");
    QTest::newRow("side file") << u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0001/Adjustments/Adjustments.plist"_s
                               << QByteArray("100APPLE/IMG_0001.AAE");
    QTest::newRow("a step of an edit") << u"/PhotoData/Mutations/DCIM/100APPLE/IMG_0001/Adjustments/Penultimate.jpg"_s
                                       << QByteArray();
    QTest::newRow("way out") << u"/DCIM/../../etc/passwd"_s << QByteArray();
    QTest::newRow("way out of an edit") << u"/PhotoData/Mutations/DCIM/../x/Adjustments/FullSizeRender.jpg"_s
                                        << QByteArray();
    QTest::newRow("edit named like a way out")
        << u"/PhotoData/Mutations/DCIM/../../Adjustments/FullSizeRender.jpg"_s << QByteArray();
    QTest::newRow("the app's list") << u"/PhotoData/Photos.sqlite"_s << QByteArray();
    QTest::newRow("working name") << u"/DCIM/.vellora-parcial-1"_s << QByteArray();
    QTest::newRow("no name") << u"/DCIM/"_s << QByteArray();
    QTest::newRow("too long") << u"/DCIM/"_s + QString(300, u'x') << QByteArray();
}

void PruebaCopiadas::sitios()
{
    QFETCH(const QString, ruta);
    QFETCH(const QByteArray, sitio);
    QCOMPARE(sitioLocal(ruta).value_or(QByteArray()), sitio);
}

void PruebaCopiadas::elementos_data()
{
    QTest::addColumn<QByteArray>("uno");
    QTest::addColumn<QByteArray>("otro");
    QTest::addColumn<bool>("mismo");
    QTest::newRow("Live Photo") << QByteArray("a/IMG_0001.HEIC") << QByteArray("a/IMG_0001.MOV") << true;
    QTest::newRow("edit") << QByteArray("a/IMG_0001.HEIC") << QByteArray("a/IMG_E0001.JPG") << true;
    QTest::newRow("its original's side file") << QByteArray("a/IMG_0001.HEIC") << QByteArray("a/IMG_O0001.AAE") << true;
    QTest::newRow("another folder") << QByteArray("a/IMG_0001.HEIC") << QByteArray("b/IMG_0001.MOV") << false;
    QTest::newRow("another number") << QByteArray("a/IMG_0001.HEIC") << QByteArray("a/IMG_0010.HEIC") << false;
    QTest::newRow("a word that begins with E") << QByteArray("a/IMG_East.JPG") << QByteArray("a/IMG_ast.JPG") << false;
}

void PruebaCopiadas::elementos()
{
    QFETCH(const QByteArray, uno);
    QFETCH(const QByteArray, otro);
    QFETCH(const bool, mismo);
    QCOMPARE(elementoDe(uno) == elementoDe(otro), mismo);
}

void PruebaCopiadas::notasRotas()
{
    const QTemporaryDir carpeta;
    const auto notas = carpeta.filePath(Copiadas::nombreDeNotas(u"U"_s));
    const QByteArray suma(32, 's');
    const auto una = foto("100APPLE/IMG_0001.JPG", 5, 1'700'000'000'123);
    QVERIFY(escribirFichero(carpeta.filePath(u"100APPLE/IMG_0001 (2).JPG"_s), "bytes"));
    {
        auto copiadas = Copiadas::leer(carpeta.path(), u"U"_s);
        QCOMPARE(copiadas.juzgar(una).juicio, Copiadas::Juicio::Falta); // its name belongs to another
        QVERIFY(copiadas.anotar(una, "100APPLE/IMG_0001 (2).JPG", suma));
    }
    auto linea = leerFichero(notas);
    QCOMPARE(Copiadas::leer(carpeta.path(), u"U"_s).juzgar(una).relativa, QByteArray("100APPLE/IMG_0001 (2).JPG"));
    QCOMPARE(Copiadas::leer(carpeta.path(), u"U"_s).huella(una), suma);
    // What is not noted of this very file counts for nothing: other size, other moment, other phone.
    const auto leidas = Copiadas::leer(carpeta.path(), u"U"_s);
    QVERIFY(!leidas.huella(foto("100APPLE/IMG_0001.JPG", 6, 1'700'000'000'123)));
    QVERIFY(!leidas.huella(foto("100APPLE/IMG_0001.JPG", 5, 1'700'000'000'124)));
    QVERIFY(!Copiadas::leer(carpeta.path(), u"V"_s).huella(una));
    // Lines cut off, doubled, with ways out and with anything at all are as if they were not there.
    const QByteArray basura = QByteArray(300, '\t') + "\n\n" + QByteArray(5000, 'x') + "\n" + linea.chopped(20) + '\n' +
                              suma.toHex() + "\t5\t1700000000123\t100APPLE/IMG_0001.JPG\t../../fuera\n" + suma.toHex() +
                              "\tmucho\t1700000000123\t100APPLE/IMG_0001.JPG\ta\n" + QByteArray("\0\n", 2);
    QVERIFY(escribirFichero(notas, basura + linea + linea.chopped(7)));
    auto otras = Copiadas::leer(carpeta.path(), u"U"_s);
    QCOMPARE(otras.juzgar(una).juicio, Copiadas::Juicio::Esta);
    QVERIFY(!otras.huella(foto("../../fuera", 5, 1'700'000'000'123)));
    // The next note does not join the half line.
    const auto dos = foto("100APPLE/IMG_0002.JPG", 5, 1);
    QVERIFY(otras.anotar(dos, "100APPLE/IMG_0002.JPG", suma));
    QVERIFY(Copiadas::leer(carpeta.path(), u"U"_s).huella(dos));
    // A name that would break a line is not noted.
    QVERIFY(otras.anotar(foto("a\tb\n.JPG", 5, 1), "a\tb\n.JPG", suma));
    QVERIFY(!leerFichero(notas).contains("a\tb"));
    // Of the same name, size and date anywhere below; of another date only perhaps.
    QVERIFY(escribirFichero(carpeta.filePath(u"Verano/IMG_0003.JPG"_s), "bytes"));
    QFile movida(carpeta.filePath(u"Verano/IMG_0003.JPG"_s));
    QVERIFY(movida.open(QIODevice::ReadWrite) &&
            movida.setFileTime(QDateTime::fromMSecsSinceEpoch(1'600'000'001'500), QFileDevice::FileModificationTime));
    const auto ahora = Copiadas::leer(carpeta.path(), u"U"_s);
    QCOMPARE(ahora.juzgar(foto("100APPLE/IMG_0003.JPG", 5, 1'600'000'000'000)).juicio, Copiadas::Juicio::Esta);
    QCOMPARE(ahora.juzgar(foto("100APPLE/IMG_0003.JPG", 5, 1'600'000'900'000)).juicio, Copiadas::Juicio::QuizaEste);
    QCOMPARE(ahora.juzgar(foto("100APPLE/IMG_0003.JPG", 6, 1'600'000'000'000)).juicio, Copiadas::Juicio::Falta);
}

void PruebaCopiadas::sinCarpeta()
{
    auto copiadas = Copiadas::leer(u"/no/está"_s, u"U"_s);
    const auto una = foto("a.JPG", 1, 1);
    QCOMPARE(copiadas.juzgar(una).juicio, Copiadas::Juicio::Falta);
    QVERIFY(!copiadas.anotar(una, "a.JPG", QByteArray(32, 's')));
}

QTEST_GUILESS_MAIN(PruebaCopiadas)
#include "PruebaCopiadas.moc"
