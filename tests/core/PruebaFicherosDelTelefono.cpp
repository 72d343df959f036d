#include "core/BaseDeDatos.h"
#include "core/FicheroAjeno.h"
#include "core/Plist.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

void ejecutar(const QString &fichero, const char *sql)
{
    sqlite3 *base = nullptr;
    QCOMPARE(sqlite3_open(fichero.toUtf8().constData(), &base), SQLITE_OK);
    QCOMPARE(sqlite3_exec(base, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(base);
}

constexpr auto xml = R"(<?xml version="1.0"?><plist version="1.0"><dict>
<key>texto</key><string>ñ</string><key>menos</key><integer>-5</integer><key>si</key><true/>
<key>lista</key><array><string>a</string><dict><key>Size</key><integer>7</integer></dict></array></dict></plist>)";

QByteArray conPlist(const QByteArray &dentro)
{
    return "<?xml version=\"1.0\"?><plist version=\"1.0\">" + dentro + "</plist>";
}

QByteArray enCuatro(quint32 numero)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(numero, bytes.data());
    return bytes;
}

/// An array that refers to those objects.
QByteArray listaBinaria(const QList<quint32> &objetos)
{
    QByteArray lista = QByteArray("\xAF\x12", 2) + enCuatro(static_cast<quint32>(objetos.size()));
    for (const auto uno : objetos)
        lista += enCuatro(uno);
    return lista;
}

/// A binary list of these objects, the first of which is its root.
QByteArray binaria(const QList<QByteArray> &objetos)
{
    QByteArray bytes = "bplist00";
    QByteArray sitios;
    for (const auto &uno : objetos) {
        sitios += enCuatro(static_cast<quint32>(bytes.size()));
        bytes += uno;
    }
    const auto tabla = static_cast<quint32>(bytes.size());
    return bytes + sitios + QByteArray("\0\0\0\0\0\0\4\4", 8) + enCuatro(0) +
           enCuatro(static_cast<quint32>(objetos.size())) + QByteArray(12, '\0') + enCuatro(tabla);
}

} // namespace

/// Property lists and databases that come from the phone may be anything at all.
class PruebaFicherosDelTelefono : public QObject
{
    Q_OBJECT

private slots:
    void listas();
    void listasRotas();
    void bases();
    void basesRotas();
    void listasDesmedidas_data();
    void listasDesmedidas();
    void basesDesmedidas_data();
    void basesDesmedidas();
    void unArbolQueSeRepite();
    void loQueNoEsFichero();

private:
    QTemporaryDir carpeta;
};

void PruebaFicherosDelTelefono::listas()
{
    const auto plist = Plist::interpretar(xml);
    QVERIFY(plist);
    const auto raiz = plist->raiz();
    QCOMPARE(raiz["texto"].texto(), u"ñ"_s);
    QCOMPARE(raiz["menos"].entero(), -5);
    QCOMPARE(raiz["si"].logico(), true);
    QCOMPARE(raiz["lista"].en(1)["Size"].entero(), 7);
    QVERIFY(!raiz["texto"].entero() && !raiz["menos"].texto() && !raiz["si"].entero());
    QVERIFY(!raiz["lista"].en(9)["Size"].en(3)["nada"].logico());
}

void PruebaFicherosDelTelefono::listasRotas()
{
    char *binario = nullptr;
    uint32_t largo = 0;
    plist_t nodo = nullptr;
    plist_from_xml(xml, static_cast<uint32_t>(qstrlen(xml)), &nodo);
    plist_to_bin(nodo, &binario, &largo);
    plist_free(nodo);
    const QByteArray bytes(binario, static_cast<qsizetype>(largo));
    plist_to_bin_free(binario);
    QVERIFY(Plist::interpretar(bytes));
    // Cut anywhere, or with any byte changed, the answer is absent or a value: never a crash.
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        (void)Plist::interpretar(bytes.first(i));
        auto cambiados = bytes;
        cambiados[i] = static_cast<char>(~cambiados[i]);
        if (const auto plist = Plist::interpretar(cambiados))
            (void)plist->raiz()["lista"].en(1)["Size"].entero();
    }
    QVERIFY(!Plist::interpretar({}));
    QVERIFY(!Plist::interpretar("hola"));
    QVERIFY(!Plist::leer(u"/no/existe"_s));
}

void PruebaFicherosDelTelefono::bases()
{
    const auto fichero = carpeta.filePath(u"100% ñ #1?.db"_s);
    ejecutar(fichero,
             "CREATE TABLE t(a TEXT, b INTEGER, c BLOB); INSERT INTO t VALUES('ñ', -3, x'00ff'), (NULL, NULL, NULL)");
    const auto base = BaseDeDatos::abrir(fichero);
    QVERIFY(base);
    QStringList textos;
    QVERIFY(base->porCadaFila("SELECT a, b, c FROM t", [&](const Fila &fila) {
        textos << u"%1|%2|%3"_s.arg(fila.texto(0)).arg(fila.entero(1)).arg(QString::fromLatin1(fila.datos(2).toHex()));
        return true;
    }));
    QCOMPARE(textos, (QStringList{u"ñ|-3|00ff"_s, u"|0|"_s}));
    int vistas = 0;
    QVERIFY(base->porCadaFila("SELECT a FROM t", [&](const Fila &) { return ++vistas < 1; }));
    QCOMPARE(vistas, 1);
    QVERIFY(!base->porCadaFila("SELECT z FROM t", [](const Fila &) { return true; }));
}

void PruebaFicherosDelTelefono::basesRotas()
{
    const auto nada = [](const Fila &) {
        return true;
    };
    QVERIFY(!BaseDeDatos::abrir(carpeta.filePath(u"no-existe.db"_s)));
    const auto fichero = carpeta.filePath(u"rota.db"_s);
    ejecutar(fichero, "CREATE TABLE t(a); WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x+1 FROM n WHERE x<5000) "
                      "INSERT INTO t SELECT 'fila ' || x FROM n");
    QFile archivo(fichero);
    QVERIFY(archivo.resize(archivo.size() / 2)); // truncated
    const auto base = BaseDeDatos::abrir(fichero);
    QVERIFY(!base || !base->porCadaFila("SELECT a FROM t", nada));
    QVERIFY(archivo.resize(0)); // what a full disk leaves
    const auto vacia = BaseDeDatos::abrir(fichero);
    QVERIFY(!vacia || !vacia->porCadaFila("SELECT a FROM t", nada));
}

void PruebaFicherosDelTelefono::listasDesmedidas_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("cabe");
    const auto nivel = [](int cual, int veces) {
        return listaBinaria(QList<quint32>(veces, static_cast<quint32>(cual)));
    };
    const auto niveles = [&](int cuantos, int veces) {
        QList<QByteArray> objetos;
        for (int i = 1; i <= cuantos; ++i)
            objetos << nivel(i, veces);
        return binaria(objetos << QByteArray("\x10\x01", 2));
    };
    const auto anidada = [](int cuantas) {
        return conPlist(QByteArray("<array>").repeated(cuantas) + QByteArray("</array>").repeated(cuantas));
    };
    QTest::newRow("XML, as deep as any") << anidada(60) << true;
    QTest::newRow("XML, too deep") << anidada(64) << false;
    QTest::newRow("XML, as deep as a stack") << anidada(200'000) << false;
    QTest::newRow("XML, deep behind a quoted mark")
        << conPlist(QByteArray("<array a=\"/></array>\">").repeated(200'000)) << false;
    QTest::newRow("XML, deep behind a comment")
        << conPlist(QByteArray("<!-- </array> --><array>").repeated(200'000)) << false;
    QTest::newRow("XML, an honest comment") << conPlist("<!-- a --><string>x</string>") << true;
    QTest::newRow("XML, entities") << QByteArray("<!DOCTYPE plist [<!ENTITY a \"aaaa\">]>") +
                                          conPlist("<string>&a;</string>")
                                   << false;
    QTest::newRow("XML, wide") << conPlist(QByteArray("<array>") + QByteArray("<true/>").repeated(500'000) + "</array>")
                               << false;
    QTest::newRow("binary, as deep as any") << niveles(60, 1) << true;
    QTest::newRow("binary, too deep") << niveles(64, 1) << false;
    QTest::newRow("binary, without a ground") << niveles(100'000, 1) << false;
    QTest::newRow("binary, unfolds a little") << niveles(5, 10) << true;
    QTest::newRow("binary, unfolds to a million") << niveles(6, 10) << false;
    QTest::newRow("binary, unfolds without an end") << niveles(20, 14) << false;
    QTest::newRow("binary, holds itself") << binaria({listaBinaria({0})}) << false;
    QTest::newRow("binary, one long text a thousand times")
        << binaria({nivel(1, 1000), QByteArray("\x4F\x12\x00\x02\x00\x00", 6) + QByteArray(0x20000, 'a')}) << false;
    QTest::newRow("binary, a length that lies")
        << binaria({QByteArray("\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10)}) << false;
}

void PruebaFicherosDelTelefono::listasDesmedidas()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, cabe);
    QElapsedTimer reloj;
    reloj.start();
    QCOMPARE(Plist::interpretar(bytes).has_value(), cabe);
    QVERIFY2(reloj.elapsed() < 5000, qPrintable(QString::number(reloj.elapsed())));
}

void PruebaFicherosDelTelefono::basesDesmedidas_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<bool>("entera"); // or else refused, or given up
    QTest::newRow("a column that takes for ever")
        << QByteArray("CREATE TABLE t(b); INSERT INTO t VALUES(1);"
                      "ALTER TABLE t ADD COLUMN a AS (instr(zeroblob(30000000), zeroblob(15000000) || 'x'))")
        << true;
    QTest::newRow("the same under another name, stored")
        << QByteArray(
               "CREATE TABLE \"T\"(b, \"A\" TEXT GENERATED ALWAYS AS (hex(b)) STORED); INSERT INTO t(b) VALUES(1)")
        << true;
    QTest::newRow("a value without an end")
        << QByteArray("CREATE TABLE t(a); INSERT INTO t VALUES(zeroblob(200000000))") << false;
    QTest::newRow("a view")
        << QByteArray("CREATE VIEW t AS WITH RECURSIVE c(a) AS (SELECT 1 UNION ALL SELECT a+1 FROM c) SELECT a FROM c")
        << false;
    QTest::newRow("a table of a module") << QByteArray(
                                                "CREATE VIRTUAL TABLE t USING fts5(a); INSERT INTO t VALUES('x')")
                                         << false;
    QTest::newRow("a trigger, which nothing fires")
        << QByteArray(
               "CREATE TABLE t(a); INSERT INTO t VALUES(1); CREATE TRIGGER d AFTER INSERT ON t BEGIN SELECT 1; END")
        << true;
}

void PruebaFicherosDelTelefono::basesDesmedidas()
{
    QFETCH(QByteArray, sql);
    QFETCH(bool, entera);
    const auto fichero = carpeta.filePath(u"desmedida-%1.db"_s.arg(QString::fromLatin1(QTest::currentDataTag())));
    ejecutar(fichero, sql.constData());
    const auto base = BaseDeDatos::abrir(fichero);
    QVERIFY(base);
    QElapsedTimer reloj;
    reloj.start();
    qint64 bytes = 0;
    const bool leida = base->porCadaFila("SELECT a FROM t ORDER BY a", [&](const Fila &fila) {
        bytes += fila.texto(0).size();
        return true;
    });
    QCOMPARE(leida, entera);
    QVERIFY(bytes < 100);
    QVERIFY2(reloj.elapsed() < 15000, qPrintable(QString::number(reloj.elapsed())));
}

/// An inner page whose children are all one page, level upon level, gives more rows than there are atoms.
void PruebaFicherosDelTelefono::unArbolQueSeRepite()
{
    const auto fichero = carpeta.filePath(u"arbol.db"_s);
    ejecutar(fichero, "CREATE TABLE t(a); WITH RECURSIVE n(x) AS (SELECT 1 UNION ALL SELECT x+1 FROM n WHERE x<300000) "
                      "INSERT INTO t SELECT 'una fila de tantas' FROM n");
    QFile archivo(fichero);
    QVERIFY(archivo.open(QIODevice::ReadWrite));
    auto bytes = archivo.readAll();
    constexpr qsizetype pagina = 4096;
    int cambiadas = 0;
    for (qsizetype en = pagina; en < bytes.size(); en += pagina) {
        if (bytes[en] != 5)
            continue;
        const auto celdas = qFromBigEndian<quint16>(bytes.constData() + en + 3);
        const auto hija = [&](int celda) {
            return en + qFromBigEndian<quint16>(bytes.constData() + en + 12 + 2 * qsizetype(celda));
        };
        const auto primera = bytes.mid(hija(0), 4);
        for (int i = 0; i < celdas; ++i)
            bytes.replace(hija(i), 4, primera);
        bytes.replace(en + 8, 4, primera);
        ++cambiadas;
    }
    QVERIFY(cambiadas > 2);
    // A first leaf with more rows than the rest of the file had would not be needed: the first one stands for all.
    QVERIFY(archivo.seek(0) && archivo.write(bytes) == bytes.size() && archivo.resize(20 * pagina));
    archivo.close();
    const auto base = BaseDeDatos::abrir(fichero);
    QVERIFY(base);
    qint64 filas = 0;
    QVERIFY(!base->porCadaFila("SELECT a FROM t", [&](const Fila &) { return ++filas > 0; }));
    QVERIFY2(filas < 50'000, qPrintable(QString::number(filas)));
}

void PruebaFicherosDelTelefono::loQueNoEsFichero()
{
    const auto tuberia = carpeta.filePath(u"tuberia"_s);
    QCOMPARE(mkfifo(tuberia.toUtf8().constData(), 0600), 0);
    const auto fichero = carpeta.filePath(u"lista.plist"_s);
    QFile archivo(fichero);
    QVERIFY(archivo.open(QIODevice::WriteOnly) && archivo.write(xml) > 0);
    archivo.close();
    const auto enlace = carpeta.filePath(u"enlace"_s);
    QVERIFY(QFile::link(fichero, enlace));
    QVERIFY(Plist::leer(fichero));
    for (const auto &nombre : {tuberia, enlace, carpeta.path(), u"/dev/zero"_s, u"/dev/tty"_s}) {
        QVERIFY2(!Plist::leer(nombre), qPrintable(nombre)); // the first would wait for ever
        QVERIFY2(!BaseDeDatos::abrir(nombre) && !BaseDeDatos::abrirCopia(nombre), qPrintable(nombre));
        QVERIFY2(!abrirAjeno(nombre) && !leerAjeno(nombre, 100), qPrintable(nombre));
    }
}

QTEST_GUILESS_MAIN(PruebaFicherosDelTelefono)
#include "PruebaFicherosDelTelefono.moc"
