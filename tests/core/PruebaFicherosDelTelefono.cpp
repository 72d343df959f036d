#include "core/BaseDeDatos.h"
#include "core/Plist.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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

QTEST_GUILESS_MAIN(PruebaFicherosDelTelefono)
#include "PruebaFicherosDelTelefono.moc"
