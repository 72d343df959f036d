#include "engine/backup/Sacador.h"
#include "support/CopiaDePrueba.h"

#include <QCryptographicHash>
#include <QTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

namespace
{

const auto clave = u"señal 42"_s;

/// Everything, under its own names.
std::optional<QByteArray> todo(const CopiaAbierta::Entrada &entrada)
{
    return entrada.dominio + '/' + entrada.ruta;
}

} // namespace

class PruebaSacador : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(copias.crearTelefono());
        QVERIFY(copias.copiar(u"cifrada"_s, clave));
        QVERIFY(copias.copiar(u"clara"_s, {}));
    }
    void igualQueMvt();
    void igualQueElTelefono_data();
    void igualQueElTelefono();
    void nombresHostiles();
    void ficherosQueFaltan();
    void ficherosVacios();
    void sinSitio_data();
    void sinSitio();
    void lasFechas();

private:
    /// Takes everything out; an empty motive means that it went to the end.
    QString sacar(const QString &copia, const QString &destino, Cuenta &cuenta)
    {
        const auto deTrabajo = CarpetaDeDestino::abrir(destino);
        const auto abierta = CopiaAbierta::abrir(
            copia, [] { return clave; }, *deTrabajo);
        if (!abierta)
            return abierta.motivo();
        quejas.clear();
        return Sacador(*abierta, &todo)
            .sacar(
                destino, [](const Cuenta &) {},
                [this](const QByteArray &ruta, const QString &motivo) {
                    quejas << QString::fromUtf8(ruta) + u": "_s + motivo;
                },
                cuenta)
            .value_or(QString());
    }

    CopiaDePrueba copias;
    QStringList quejas;
};

void PruebaSacador::igualQueMvt()
{
    // The only one with the rounds of a true phone.
    QVERIFY(copias.copiar(u"deverdad"_s, clave, 10'000'000));
    Cuenta cuenta;
    QCOMPARE(sacar(copias.ruta(u"deverdad"_s), copias.ruta(u"nuestra"_s), cuenta), QString());
    QCOMPARE(cuenta.fallidos, 0);

    QVERIFY2(QFile::exists(QStringLiteral(MVT)), "mvt-ios is not there: tools/preparar brings it");
    QProcess mvt;
    auto entorno = QProcessEnvironment::systemEnvironment();
    entorno.insert(u"MVT_IOS_BACKUP_PASSWORD"_s, clave);
    mvt.setProcessEnvironment(entorno);
    const auto suya = copias.ruta(u"suya"_s);
    mvt.start(QStringLiteral(MVT), {u"--disable-update-check"_s, u"--disable-indicator-update-check"_s,
                                    u"decrypt-backup"_s, u"-d"_s, suya, copias.ruta(u"deverdad"_s)});
    QVERIFY(mvt.waitForFinished(120000));
    QVERIFY2(QFile::exists(suya + u"/Manifest.db"_s), mvt.readAll().constData());

    const auto lista = BaseDeDatos::abrir(suya + u"/Manifest.db"_s);
    QVERIFY(lista.has_value());
    const auto nuestros = CopiaDePrueba::contenido(copias.ruta(u"nuestra"_s));
    qint64 comparados = 0;
    const auto comparar = [&](const Fila &fila) {
        QFile fichero(suya + u'/' + fila.texto(0).left(2) + u'/' + fila.texto(0));
        const auto nombre = fila.texto(1) + u'/' + fila.texto(2);
        const bool igual =
            fichero.open(QIODevice::ReadOnly) && nuestros.contains(nombre) && fichero.readAll() == nuestros[nombre];
        if (!igual)
            qWarning("%s differs", qPrintable(nombre));
        comparados += igual ? 1 : 0;
        return true;
    };
    QVERIFY(lista->porCadaFila("SELECT fileID, domain, relativePath FROM Files WHERE flags = 1", comparar));
    QVERIFY(comparados > 50);
    QCOMPARE(comparados, cuenta.copiados);
    QCOMPARE(nuestros.size(), comparados);
}

void PruebaSacador::igualQueElTelefono_data()
{
    QTest::addColumn<QString>("copia");
    QTest::newRow("encrypted") << u"cifrada"_s;
    QTest::newRow("in clear") << u"clara"_s;
}

void PruebaSacador::igualQueElTelefono()
{
    QFETCH(QString, copia);
    Cuenta cuenta;
    const auto destino = copias.ruta(u"sacada-"_s + copia);
    QCOMPARE(sacar(copias.ruta(copia), destino, cuenta), QString());
    QVERIFY2(quejas.isEmpty(), qPrintable(quejas.join(u'\n')));
    const auto sacados = CopiaDePrueba::contenido(destino);
    const auto dominios = CopiaDePrueba::contenido(copias.telefono() + u"/dominios"_s);
    qint64 iguales = 0;
    for (auto it = dominios.cbegin(); it != dominios.cend(); ++it) {
        if (!sacados.contains(it.key()))
            continue;
        QVERIFY2(sacados[it.key()] == it.value(), qPrintable(it.key()));
        ++iguales;
    }
    QVERIFY(iguales > 30);
    // What iOS keeps for the encrypted ones.
    QCOMPARE(sacados.contains(u"HealthDomain/Health/healthdb_secure.sqlite"_s), copia == u"cifrada"_s);
}

void PruebaSacador::nombresHostiles()
{
    const QList<QByteArray> piezas{"..",
                                   "../x",
                                   "../../etc/x",
                                   "a/../../x",
                                   "/etc/x",
                                   "//x",
                                   "a//b",
                                   "./x",
                                   "a/./x",
                                   "a/..",
                                   "a/",
                                   "",
                                   ".",
                                   QByteArray("a\0b", 3),
                                   QByteArray("\0", 1),
                                   "a\nb",
                                   "a\rb",
                                   "\x1b[2J",
                                   QByteArray(255, 'n'),
                                   QByteArray(256, 'n'),
                                   QByteArray(300, 'n'),
                                   QByteArray("d/").repeated(2000) + "f",
                                   QByteArray(5000, 'n'),
                                   "a\xFF"
                                   "b",
                                   "\xC0\xAE\xC0\xAE/x",
                                   "\xED\xA0\x80",
                                   "CON",
                                   "a:b",
                                   "a\\..\\b",
                                   "~/x",
                                   "$HOME/x",
                                   "`x`",
                                   "-rf",
                                   "*",
                                   "ñ 漢 😀",
                                   ".vellora-parcial-1",
                                   ".vellora-parcial-2",
                                   "Library/SMS/sms.db/x",
                                   "Library"};
    const auto copia = copias.ruta(u"hostil"_s);
    QVERIFY(copias.copiar(u"hostil"_s, {}));
    sqlite3 *lista = nullptr;
    QCOMPARE(sqlite3_open((copia + u"/Manifest.db"_s).toUtf8().constData(), &lista), SQLITE_OK);
    sqlite3_stmt *alta = nullptr;
    sqlite3_prepare_v2(lista,
                       "INSERT INTO Files SELECT fileID || 'x' || random(), CAST(? AS TEXT), CAST(? AS TEXT), 1, file "
                       "FROM Files WHERE flags = 1 LIMIT 1",
                       -1, &alta, nullptr);
    // As a path inside a good domain, and as the domain of a good path.
    for (const auto &pieza : piezas) {
        for (const bool comoDominio : {false, true}) {
            sqlite3_reset(alta);
            sqlite3_bind_blob(alta, comoDominio ? 1 : 2, pieza.constData(), static_cast<int>(pieza.size()),
                              SQLITE_TRANSIENT);
            sqlite3_bind_text(alta, comoDominio ? 2 : 1, "HomeDomain", -1, SQLITE_STATIC);
            QCOMPARE(sqlite3_step(alta), SQLITE_DONE);
        }
    }
    sqlite3_finalize(alta);
    // The identifiers are theirs too: these have to be files of the backup for the names to be tried at all.
    sqlite3_exec(
        lista,
        "CREATE TEMP TABLE bueno AS SELECT fileID f FROM Files WHERE length(fileID) = 40 AND flags = 1 LIMIT 1;"
        "DROP INDEX IF EXISTS sqlite_autoindex_Files_1;",
        nullptr, nullptr, nullptr);
    sqlite3_exec(
        lista,
        "CREATE TABLE Otra AS SELECT CASE WHEN length(fileID) = 40 THEN fileID ELSE (SELECT f FROM bueno) END fileID, "
        "domain, relativePath, flags, file FROM Files; DROP TABLE Files; ALTER TABLE Otra RENAME TO Files;"
        "INSERT INTO Files SELECT '../../etc/passwd', 'D', 'id1', 1, file FROM Files LIMIT 1;"
        "INSERT INTO Files SELECT '', 'D', 'id2', 1, file FROM Files LIMIT 1;"
        "INSERT INTO Files SELECT NULL, NULL, NULL, 1, NULL;",
        nullptr, nullptr, nullptr);
    sqlite3_close(lista);

    const auto lado = copias.ruta(u"aparte"_s);
    QVERIFY(QDir().mkpath(lado));
    const auto fuera = CopiaDePrueba::contenido(lado);
    Cuenta cuenta;
    const auto destino = lado + u"/destino"_s;
    QCOMPARE(sacar(copia, destino, cuenta), QString());
    QVERIFY2(cuenta.fallidos >= 40, qPrintable(QString::number(cuenta.fallidos)));
    const auto dentro = CopiaDePrueba::contenido(destino);
    QCOMPARE(dentro.size() + fuera.size(), CopiaDePrueba::contenido(lado).size());
    QVERIFY(dentro.contains(u"HomeDomain/ñ 漢 😀"_s) && dentro.contains(u"HomeDomain/a\nb"_s));
    QVERIFY(!QFile::exists(u"/etc/x"_s) && !QFile::exists(u"/x"_s));
    QCOMPARE(dentro.size(), cuenta.copiados);
}

void PruebaSacador::ficherosQueFaltan()
{
    const auto copia = copias.ruta(u"coja"_s);
    QVERIFY(copias.copiar(u"coja"_s, clave));
    // One file gone, one cut in the middle, one that is a folder, one that is a link elsewhere.
    auto ficheros = CopiaDePrueba::contenido(copia).keys().filter(QRegularExpression(u"^../"_s));
    QVERIFY(QFile::remove(copia + u'/' + ficheros[0]));
    qsizetype grande = 1;
    while (QFileInfo(copia + u'/' + ficheros[grande]).size() < 4096)
        ++grande;
    QVERIFY(QFile::resize(copia + u'/' + ficheros[grande], 1000));
    QVERIFY(QFile::remove(copia + u'/' + ficheros[grande + 1]) && QDir().mkpath(copia + u'/' + ficheros[grande + 1]));
    QVERIFY(QFile::remove(copia + u'/' + ficheros[grande + 2]) &&
            QFile::link(u"/etc/hostname"_s, copia + u'/' + ficheros[grande + 2]));
    Cuenta cuenta;
    QCOMPARE(sacar(copia, copias.ruta(u"sacada-coja"_s), cuenta), QString());
    QCOMPARE(cuenta.fallidos, 3);
    QCOMPARE(cuenta.cortados, 1);
    QCOMPARE(quejas.size(), 4);
    QCOMPARE(CopiaDePrueba::contenido(copias.ruta(u"sacada-coja"_s)).size(), cuenta.copiados);
}

void PruebaSacador::ficherosVacios()
{
    const auto dominio = copias.telefono() + u"/dominios/HomeDomain/"_s;
    for (const auto &[nombre, bytes] :
         {std::pair(u"vacio"_s, QByteArray()), std::pair(u"lleno"_s, QByteArray("algo"))}) {
        QFile fichero(dominio + nombre);
        QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size());
    }
    const auto copia = copias.ruta(u"vacía"_s);
    const bool copiada = copias.copiar(u"vacía"_s, clave);
    QVERIFY(QFile::remove(dominio + u"vacio"_s) && QFile::remove(dominio + u"lleno"_s) && copiada);
    // Without a block of padding, as some systems leave an empty file; the other one has lost all that it had.
    for (const auto *ruta : {"HomeDomain-vacio", "HomeDomain-lleno"}) {
        const auto id = QString::fromLatin1(QCryptographicHash::hash(ruta, QCryptographicHash::Sha1).toHex());
        QVERIFY(QFile::resize(copia + u'/' + id.left(2) + u'/' + id, 0));
    }
    Cuenta cuenta;
    QCOMPARE(sacar(copia, copias.ruta(u"sacada-vacía"_s), cuenta), QString());
    QCOMPARE(cuenta.fallidos, 0);
    QCOMPARE(quejas, QStringList{u"HomeDomain/lleno: la copia solo tiene su principio"_s});
    QCOMPARE(CopiaDePrueba::contenido(copias.ruta(u"sacada-vacía"_s)).value(u"HomeDomain/vacio"_s, "x"), QByteArray());
}

void PruebaSacador::sinSitio_data()
{
    QTest::addColumn<int>("limite");
    for (const int limite : {0, 1, 4095, 4096, 20000, 60000, 200000})
        QTest::newRow(qPrintable(QString::number(limite))) << limite;
}

void PruebaSacador::sinSitio()
{
    QFETCH(int, limite);
    // The limit of a process on one file ends a write as a full volume does.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit antes{};
    getrlimit(RLIMIT_FSIZE, &antes);
    const rlimit corto{static_cast<rlim_t>(limite), antes.rlim_max};
    const auto destino = copias.ruta(u"lleno-%1"_s.arg(limite));
    setrlimit(RLIMIT_FSIZE, &corto);
    Cuenta cuenta;
    const auto motivo = sacar(copias.ruta(u"clara"_s), destino, cuenta);
    setrlimit(RLIMIT_FSIZE, &antes);
    QVERIFY2(motivo.contains(u"No queda sitio"_s), qPrintable(motivo));
    // What stands under its own name is whole.
    const auto enteros = CopiaDePrueba::contenido(copias.ruta(u"sacada-clara"_s));
    const auto puestos = CopiaDePrueba::contenido(destino);
    for (auto it = puestos.cbegin(); it != puestos.cend(); ++it)
        QVERIFY2(enteros.value(it.key()) == it.value(), qPrintable(it.key()));
    QCOMPARE(puestos.size(), cuenta.copiados);
}

void PruebaSacador::lasFechas()
{
    const auto sonido = u"Library/SMS/sms.db"_s;
    const QFileInfo enElTelefono(copias.telefono() + u"/dominios/HomeDomain/"_s + sonido);
    const QFileInfo sacado(copias.ruta(u"sacada-cifrada/HomeDomain/"_s + sonido));
    QCOMPARE(sacado.lastModified().toSecsSinceEpoch(), enElTelefono.lastModified().toSecsSinceEpoch());
}

QTEST_GUILESS_MAIN(PruebaSacador)
#include "PruebaSacador.moc"
