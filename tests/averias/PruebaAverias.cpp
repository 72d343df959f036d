#include "averias/Desempaquetada.h"
#include "engine/backup/Sacador.h"
#include "extraction/Extraccion.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

namespace
{

const auto clave = u"rosquillas"_s;
constexpr qint64 maximoDeMilisegundos = 5000;

using Azar = QRandomGenerator;

/// Damages the bytes in one of many ways; the name of the way.
QByteArray estropear(QByteArray &bytes, Azar &azar)
{
    const auto lugar = [&] {
        return bytes.isEmpty() ? 0 : static_cast<qsizetype>(azar.bounded(static_cast<quint32>(bytes.size())));
    };
    const auto pagina = [&](char con) {
        const auto desde = lugar() / 4096 * 4096;
        for (auto i = desde; i < std::min(desde + 4096, bytes.size()); ++i)
            bytes[i] = con;
    };
    const auto cambiar = [&](int cuantos, qsizetype hasta) {
        for (int i = 0; i < cuantos && !bytes.isEmpty(); ++i)
            bytes[lugar() % std::min(hasta, bytes.size())] = static_cast<char>(azar.bounded(256));
    };
    switch (azar.bounded(10)) {
    case 0:
        return cambiar(1, bytes.size()), "one byte";
    case 1:
        return cambiar(20, bytes.size()), "twenty bytes";
    case 2:
        return cambiar(300, bytes.size()), "three hundred bytes";
    case 3:
        return cambiar(3, 100), "the head"; // page size, page count, root of the schema, lengths
    case 4:
        return bytes.truncate(lugar()), "cut";
    case 5:
        return bytes.clear(), "empty";
    case 6:
        return pagina('\0'), "a page of zeros";
    case 7:
        return pagina('\xFF'), "a page of ones";
    case 8: {
        const auto de = lugar() / 4096 * 4096;
        return bytes.replace(lugar() / 4096 * 4096, 4096, bytes.mid(de, 4096)), "a page twice";
    }
    default:
        return bytes.insert(lugar(), QByteArray(1 + static_cast<qsizetype>(azar.bounded(5000U)), 'g')),
               "something in between";
    }
}

/// Tables and columns as some other version of the system might have them.
QByteArray otroEsquema(Azar &azar)
{
    const QList<QByteArray> cambios{
        "ALTER TABLE message RENAME TO mensaje", "ALTER TABLE handle RENAME COLUMN id TO ident",
        "ALTER TABLE ZWAMESSAGE RENAME COLUMN ZTEXT TO ZBODY", "DROP TABLE ZCALLRECORD",
        "ALTER TABLE CalendarItem RENAME COLUMN summary TO title", "DROP TABLE samples",
        "ALTER TABLE ABMultiValue RENAME TO ABValue", "ALTER TABLE voicemail RENAME COLUMN sender TO caller",
        "ALTER TABLE bookmarks RENAME COLUMN url TO link", "DROP TABLE history_items",
        "ALTER TABLE ZICCLOUDSYNCINGOBJECT RENAME COLUMN ZTITLE1 TO ZTITLE9",
        // A table of the phone's name that never ends.
        "DROP TABLE handle; CREATE VIEW handle AS WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x+1 "
        "FROM c) SELECT x AS ROWID, 'x' AS id FROM c",
        "DROP TABLE samples; CREATE VIEW samples AS WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x+1 "
        "FROM c) SELECT x AS data_type, x AS start_date FROM c",
        "UPDATE message SET text = zeroblob(3000000) WHERE ROWID < 3",
        "UPDATE message SET date = 'mañana', is_from_me = x'00FF'",
        "UPDATE handle SET id = CAST(x'2E2E2F2E2E2FFF00' AS TEXT) WHERE ROWID = (SELECT MIN(ROWID) FROM handle)"};
    return cambios[azar.bounded(static_cast<int>(cambios.size()))];
}

} // namespace

/// Damaged backups and databases: whatever is in them, the work ends soon, in order, and writes nowhere else.
/// VELLORA_AVERIAS: how many variants of each kind.
class PruebaAverias : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void copiasEstropeadas();
    void basesEstropeadas();
    void otrosEsquemas();

private:
    int cuantas() const
    {
        const int pedidas = qEnvironmentVariableIntValue("VELLORA_AVERIAS");
        return pedidas > 0 ? pedidas : 60;
    }
    void sacar(const QString &copia);
    void vigilado(const QByteArray &que, const std::function<void()> &trabajo);

    CopiaDePrueba copias;
    QString lado; ///< holds the results, and must hold nothing else
    QStringList bases;
};

void PruebaAverias::initTestCase()
{
    QVERIFY(copias.crearTelefono());
    QVERIFY(copias.copiar(u"cifrada"_s, clave));
    QVERIFY(copias.copiar(u"clara"_s, {}));
    QVERIFY(desempaquetar(copias, copias.ruta(u"buena"_s)));
    lado = copias.ruta(u"lado"_s);
    QVERIFY(QDir().mkpath(lado));
    for (const auto &nombre : CopiaDePrueba::contenido(copias.ruta(u"buena"_s)).keys()) {
        if (nombre.contains(".db"_L1) || nombre.contains("sqlite"_L1) || nombre.contains(".storedata"_L1))
            bases << nombre;
    }
    QVERIFY(bases.size() > 12);
}

void PruebaAverias::sacar(const QString &copia)
{
    const auto destino = lado + u"/destino"_s;
    const auto deTrabajo = CarpetaDeDestino::abrir(destino);
    const auto abierta = CopiaAbierta::abrir(
        copia, [] { return clave; }, *deTrabajo);
    Cuenta cuenta;
    if (abierta) {
        const auto todo = [](const CopiaAbierta::Entrada &entrada) {
            return std::optional(entrada.dominio + '/' + entrada.ruta);
        };
        Sacador(*abierta, todo)
            .sacar(
                destino, [](const Cuenta &) {}, [](const QByteArray &, const QString &) {}, cuenta);
    } else {
        QVERIFY(!abierta.motivo().isEmpty());
    }
    // Fewer only where the damaged list gives two files one name.
    QVERIFY(CopiaDePrueba::contenido(destino).size() <= cuenta.copiados);
    QVERIFY(CopiaDePrueba::contenido(destino).keys().filter(u".vellora-"_s).isEmpty());
}

void PruebaAverias::vigilado(const QByteArray &que, const std::function<void()> &trabajo)
{
    const auto destino = lado + u"/destino"_s;
    QElapsedTimer reloj;
    reloj.start();
    alarm(60); // what never ends is a failure too
    trabajo();
    alarm(0);
    const auto dicho = que + ": " + QByteArray::number(reloj.elapsed()) + " ms";
    QVERIFY2(reloj.elapsed() < maximoDeMilisegundos, dicho.constData());
    QCOMPARE(QDir(lado).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"destino"_s});
    QDir(destino).removeRecursively();
}

void PruebaAverias::copiasEstropeadas()
{
    Azar azar(7);
    for (int i = 0; i < cuantas(); ++i) {
        const bool cifrada = azar.bounded(2) == 0;
        const auto copia = copias.ruta(cifrada ? u"cifrada"_s : u"clara"_s);
        const bool lista = azar.bounded(3) > 0;
        QFile fichero(copia + (lista ? u"/Manifest.db"_s : u"/Manifest.plist"_s));
        QVERIFY(fichero.open(QIODevice::ReadWrite));
        const auto buenos = fichero.readAll();
        auto malos = buenos;
        const auto bolsa = malos.indexOf("VERS");
        QByteArray que;
        if (!lista && cifrada && azar.bounded(2) == 0) {
            // Inside the key bag; not the rounds, whose limit has a test of its own and whose honest work takes
            // seconds.
            auto dentro = malos.mid(bolsa, 1100);
            que = "key bag, " + estropear(dentro, azar);
            malos.replace(bolsa, 1100, dentro.leftJustified(1100, 'g', true));
            for (const char *rondas : {"ITER", "DPIC"}) {
                const auto en = buenos.indexOf(rondas);
                malos.replace(en, 12, buenos.mid(en, 12));
            }
        } else {
            que = fichero.fileName().section(u'/', -1).toUtf8() + ", " + estropear(malos, azar);
        }
        QVERIFY(fichero.resize(0) && fichero.seek(0) && fichero.write(malos) == malos.size() && fichero.flush());
        vigilado(que, [&] { sacar(copia); });
        QVERIFY(fichero.resize(0) && fichero.seek(0) && fichero.write(buenos) == buenos.size());
        fichero.close();
        if (QTest::currentTestFailed())
            return;
    }
}

void PruebaAverias::basesEstropeadas()
{
    Azar azar(8);
    const auto desde = copias.ruta(u"buena"_s);
    for (int i = 0; i < cuantas(); ++i) {
        const auto nombre = bases[azar.bounded(static_cast<int>(bases.size()))];
        QFile fichero(desde + u'/' + nombre);
        QVERIFY(fichero.open(QIODevice::ReadWrite));
        const auto buenos = fichero.readAll();
        auto malos = buenos;
        const auto que = nombre.toUtf8() + ", " + estropear(malos, azar);
        QVERIFY(fichero.resize(0) && fichero.seek(0) && fichero.write(malos) == malos.size() && fichero.flush());
        vigilado(que, [&] { Extraccion::todo(desde, lado + u"/destino"_s); });
        QVERIFY(fichero.resize(0) && fichero.seek(0) && fichero.write(buenos) == buenos.size());
        fichero.close();
        if (QTest::currentTestFailed())
            return;
    }
}

void PruebaAverias::otrosEsquemas()
{
    Azar azar(9);
    const auto principales = bases.filter(QRegularExpression(u"(db|sqlite|sqlitedb|storedata)$"_s));
    for (int i = 0; i < std::max(20, cuantas() / 4); ++i) {
        const auto desde = copias.ruta(u"otra"_s);
        QDir(desde).removeRecursively();
        QVERIFY(desempaquetar(copias, desde));
        const auto cambio = otroEsquema(azar);
        int aceptadas = 0;
        for (const auto &base : principales)
            aceptadas += CopiaDePrueba::sql(desde + u'/' + base, cambio) ? 1 : 0;
        QVERIFY2(aceptadas > 0, cambio.constData());
        vigilado(cambio, [&] { Extraccion::todo(desde, lado + u"/destino"_s); });
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_GUILESS_MAIN(PruebaAverias)
#include "PruebaAverias.moc"
