#include "engine/roll/Copiadas.h"
#include "support/BaseDePrueba.h"

#include <QDir>
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
    void huellaDelMismoFichero_data();
    void huellaDelMismoFichero();
    void copiaTocada();
    void sinCarpeta();

private:
    const QByteArray suma = QByteArray(32, 's');
    static struct stat como(const QString &fichero)
    {
        struct stat suyo = {};
        stat(qPrintable(fichero), &suyo);
        return suyo;
    }
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
    QTest::newRow("too long") << u"/DCIM/"_s + QString(300, u'x') << QByteArray(200, 'x') + "~0d4e2ca9";
    QTest::newRow("no UTF-8") << u"/DCIM/"_s + rutaDe("a\xFF"
                                                      "b.JPG")
                              << QByteArray("a_b~16e5edc4.JPG");
    QTest::newRow("no UTF-8 and a way out") << u"/DCIM/"_s + rutaDe("\xFF/../../b.JPG") << QByteArray();
    QTest::newRow("outside of the roll") << u"/PhotoData/CPLAssets/group1/A-B.HEIC"_s
                                         << QByteArray("CPLAssets/group1/A-B.HEIC");
    QTest::newRow("edit outside of the roll")
        << u"/PhotoData/Mutations/PhotoData/CPLAssets/group1/A-B/Adjustments/FullSizeRender.heic"_s
        << QByteArray("CPLAssets/group1/A-B_E.HEIC");
    QTest::newRow("shared album") << u"/PhotoData/PhotoCloudSharingData/1/A.JPG"_s << QByteArray();
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
    const auto una = foto("100APPLE/IMG_0001.JPG", 5, 1'700'000'000'123);
    const auto suSitio = carpeta.filePath(u"100APPLE/IMG_0001 (2).JPG"_s);
    QVERIFY(escribirFichero(suSitio, "bytes"));
    {
        auto copiadas = Copiadas::leer(carpeta.path(), u"U"_s);
        QCOMPARE(copiadas.juzgar(una).juicio, Copiadas::Juicio::Falta); // its name belongs to another
        QVERIFY(copiadas.anotar(una, "100APPLE/IMG_0001 (2).JPG", suma, como(suSitio)));
    }
    auto linea = leerFichero(notas);
    QCOMPARE(Copiadas::leer(carpeta.path(), u"U"_s).juzgar(una).relativa, QByteArray("100APPLE/IMG_0001 (2).JPG"));
    QCOMPARE(Copiadas::leer(carpeta.path(), u"U"_s).huella(una), suma);
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
    QVERIFY(otras.anotar(dos, "100APPLE/IMG_0002.JPG", suma, como(suSitio)));
    QVERIFY(Copiadas::leer(carpeta.path(), u"U"_s).huella(dos));
    // A name that would break a line is not noted.
    QVERIFY(otras.anotar(foto("a\tb\n.JPG", 5, 1), "a\tb\n.JPG", suma, como(suSitio)));
    QVERIFY(!leerFichero(notas).contains("a\tb"));
}

void PruebaCopiadas::huellaDelMismoFichero_data()
{
    QTest::addColumn<QString>("cambia");
    QTest::addColumn<bool>("vale");     // for the phone's bytes
    QTest::addColumn<bool>("seConoce"); // the copy by its note
    QTest::newRow("nothing") << QString() << true << true;
    QTest::newRow("size") << u"tamaño"_s << false << false;
    QTest::newRow("date, by a millisecond") << u"fecha"_s << false << false;
    QTest::newRow("date, by a nanosecond") << u"nanosegundo"_s << false << false;
    QTest::newRow("birth: replaced, size and date put back") << u"nacimiento"_s << false << false;
    QTest::newRow("blocks") << u"bloques"_s << false << true;
    QTest::newRow("links") << u"enlaces"_s << false << true;
    QTest::newRow("the day: copied yesterday") << u"ayer"_s << false << true;
    QTest::newRow("the clock: copied tomorrow") << u"mañana"_s << false << true;
    QTest::newRow("note of a former version") << u"antigua"_s << false << true;
    QTest::newRow("taken back") << u"desmentida"_s << false << false;
}

void PruebaCopiadas::huellaDelMismoFichero()
{
    QFETCH(const QString, cambia);
    QFETCH(const bool, vale);
    QFETCH(const bool, seConoce);
    const QTemporaryDir carpeta;
    const auto sitio = carpeta.filePath(u"100APPLE/IMG_0001.JPG"_s);
    QVERIFY(escribirFichero(sitio, "bytes"));
    QFile copia(sitio);
    QVERIFY(copia.open(QIODevice::ReadWrite) &&
            copia.setFileTime(QDateTime::fromMSecsSinceEpoch(1'700'000'000'123), QFileDevice::FileModificationTime));
    auto una = foto("100APPLE/IMG_0001.JPG", 5, 1'700'000'000'123);
    una.ficha.modificacion = 1'700'000'000'123'456'789;
    una.ficha.nacimiento = 1'700'000'000'000'000'001;
    una.ficha.bloques = 8;
    una.ficha.enlaces = 1;
    QVERIFY(Copiadas::leer(carpeta.path(), u"U"_s).anotar(una, una.relativa, suma, como(sitio)));
    const auto notas = carpeta.filePath(Copiadas::nombreDeNotas(u"U"_s));
    const auto otroDia = [&](qint64 dias) {
        auto partes = leerFichero(notas).trimmed().split('\t');
        partes[5] = QByteArray::number(partes[5].toLongLong() + dias * 86'400'000);
        return escribirFichero(notas, partes.join('\t') + '\n');
    };
    if (cambia == u"tamaño")
        una.ficha.tamano = 6;
    if (cambia == u"fecha")
        una.ficha.modificado = una.ficha.modificado.addMSecs(1);
    if (cambia == u"nanosegundo")
        ++una.ficha.modificacion;
    if (cambia == u"nacimiento")
        ++una.ficha.nacimiento;
    if (cambia == u"bloques")
        ++una.ficha.bloques;
    if (cambia == u"enlaces")
        ++una.ficha.enlaces;
    QVERIFY(cambia != u"ayer" || otroDia(-1));
    QVERIFY(cambia != u"mañana" || otroDia(1));
    if (cambia == u"antigua")
        QVERIFY(escribirFichero(notas, leerFichero(notas).split('\t').first(5).join('\t') + '\n'));
    if (cambia == u"desmentida")
        QVERIFY(Copiadas::leer(carpeta.path(), u"U"_s).desmentir(una));
    const auto leidas = Copiadas::leer(carpeta.path(), u"U"_s);
    QCOMPARE(leidas.huella(una), vale ? std::optional(suma) : std::nullopt);
    QCOMPARE(leidas.huellaDeSuCopia(una), seConoce ? std::optional(suma) : std::nullopt);
    QCOMPARE(leidas.juzgar(una).juicio == Copiadas::Juicio::Esta, seConoce);
}

void PruebaCopiadas::copiaTocada()
{
    const QTemporaryDir carpeta;
    const auto sitio = carpeta.filePath(u"100APPLE/IMG_0001.JPG"_s);
    const auto una = foto("100APPLE/IMG_0001.JPG", 5, 1'700'000'000'123);
    const auto juicio = [&] {
        return Copiadas::leer(carpeta.path(), u"U"_s).juzgar(una).juicio;
    };
    QVERIFY(escribirFichero(sitio, "bytes"));
    // Of that name, size and date, but nothing noted.
    QFile copia(sitio);
    const auto fecha = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123);
    QVERIFY(copia.open(QIODevice::ReadWrite) && copia.setFileTime(fecha, QFileDevice::FileModificationTime));
    QCOMPARE(juicio(), Copiadas::Juicio::QuizaEste);
    auto copiadas = Copiadas::leer(carpeta.path(), u"U"_s);
    QVERIFY(copiadas.anotar(una, una.relativa, suma, como(sitio)));
    QCOMPARE(juicio(), Copiadas::Juicio::Esta);
    // Written over, its date put back; moved; of another size.
    QVERIFY(copia.write("ceros") == 5 && copia.flush() && copia.setFileTime(fecha, QFileDevice::FileModificationTime));
    QCOMPARE(juicio(), Copiadas::Juicio::QuizaEste);
    QVERIFY(QDir().mkpath(carpeta.filePath(u"Verano"_s)) &&
            QFile::rename(sitio, carpeta.filePath(u"Verano/IMG_0001.JPG"_s)));
    QCOMPARE(juicio(), Copiadas::Juicio::QuizaEste);
    copiadas = Copiadas::leer(carpeta.path(), u"U"_s);
    QCOMPARE(copiadas.candidatas(una), QByteArrayList{"Verano/IMG_0001.JPG"});
    QVERIFY(copiadas.anotarSitio(una, "Verano/IMG_0001.JPG", como(carpeta.filePath(u"Verano/IMG_0001.JPG"_s))));
    QCOMPARE(juicio(), Copiadas::Juicio::Esta);
    QVERIFY(copia.resize(4));
    QCOMPARE(juicio(), Copiadas::Juicio::Falta);
}

void PruebaCopiadas::sinCarpeta()
{
    auto copiadas = Copiadas::leer(u"/no/está"_s, u"U"_s);
    const auto una = foto("a.JPG", 1, 1);
    QCOMPARE(copiadas.juzgar(una).juicio, Copiadas::Juicio::Falta);
    QVERIFY(!copiadas.anotar(una, "a.JPG", suma, {}));
}

QTEST_GUILESS_MAIN(PruebaCopiadas)
#include "PruebaCopiadas.moc"
