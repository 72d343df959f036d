#include "core/CarpetaPrivada.h"
#include "core/Tarea.h"
#include "extraction/Contactos.h"
#include "extraction/Contrasenas.h"
#include "extraction/SacarMisDatos.h"
#include "platform/Llavero.h"
#include "session/Modelo.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace vellora;

/// Contacts and passwords out of backups that the simulated phone writes, by the true engine and a true secret service.
class PruebaDeLaCopia : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void contactos();
    void contactosDeUnaCopiaNueva();
    void contactosMientrasSeTrabaja();
    void porQueNoHayNadie();
    void sinCopia();
    void contrasenas();
    void portapapeles();
    void alLlaveroYAUnArchivo();
    void losOtrosEstados();
    void nadaQuedaEscrito();
    void sacarSinPisarANadie();
    void sacarYCancelar();

private:
    static constexpr auto udid = "00008120-000A1B2C3D4C1E9A";
    static constexpr auto secreto = "MARCA-8412-";
    static constexpr auto claveDeCopia = "CLAVE-DE-COPIA-7731";

    QString copias() const { return modelo->carpetaCopias(); }
    void ponCopia(const QString &clave)
    {
        const auto destino = copias() + u'/' + QString::fromLatin1(udid);
        QDir(destino).removeRecursively();
        QVERIFY(QDir().mkpath(copias()));
        QVERIFY(casa.copiar(u"nueva"_s, clave));
        QVERIFY(QFile::rename(casa.ruta(u"nueva"_s), destino));
    }
    bool leer(Contrasenas &claves)
    {
        claves.leer();
        return QTest::qWaitFor([&] { return !modelo->tarea().enMarcha(); }, 60'000);
    }
    static bool sinTrabajo()
    {
        return QDir(CarpetaPrivada::enLaCache(u"trabajo"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot).isEmpty();
    }
    static bool marcado(const QByteArray &bytes) { return bytes.contains(secreto) || bytes.contains(claveDeCopia); }

    CopiaDePrueba casa;
    std::optional<BusPrivado> bus;
    std::optional<LlaveroPrivado> llavero;
    std::unique_ptr<Modelo> modelo;
};

void PruebaDeLaCopia::initTestCase()
{
    const auto temporal = QDir::homePath() + u"/tmp"_s;
    QVERIFY(QDir().mkpath(temporal));
    qputenv("TMPDIR", temporal.toUtf8());
    bus.emplace();
    llavero.emplace();
    QVERIFY(llavero->listo());
    QVERIFY(casa.crearTelefono());
    QJsonArray claves;
    for (int i = 0; i < 40; ++i)
        claves << QJsonObject{{u"tabla"_s, i % 3 ? u"inet"_s : u"genp"_s},
                              {u"clase"_s, i == 39 ? 9 : 6},
                              {u"svce"_s, i % 2 ? u"AirPort"_s : u"com.ejemplo"_s},
                              {u"srvr"_s, u"sitio%1.es"_s.arg(i)},
                              {u"acct"_s, u"cuenta;%1"_s.arg(i)},
                              {u"clave"_s, QString::fromLatin1(secreto) + u"%1;x"_s.arg(i)}};
    QFile fichero(casa.telefono() + u"/llavero.json"_s);
    QVERIFY(fichero.open(QIODevice::WriteOnly) && fichero.write(QJsonDocument(claves).toJson()) > 0);
}

void PruebaDeLaCopia::init()
{
    QDir(QDir::homePath() + u"/Vellora"_s).removeRecursively();
    QDir().mkpath(QDir::homePath() + u"/Vellora/iPhone"_s);
    modelo = std::make_unique<Modelo>();
    QSignalSpy primera(modelo.get(), &Modelo::refrescado);
    QVERIFY(primera.wait(20'000));
}

void PruebaDeLaCopia::contactos()
{
    ponCopia({});
    Contactos lista(*modelo, [](const QByteArray &bytes) { return bytes.startsWith("\xff\xd8"); });
    lista.leer();
    QVERIFY(lista.cargando());
    QTRY_VERIFY_WITH_TIMEOUT(!lista.cargando(), 60'000);
    QVERIFY(lista.lista().size() > 20);
    QVERIFY(!lista.motivo());
    // The address book and nothing else came to the result folder.
    for (const auto &fichero : CopiaDePrueba::contenido(modelo->carpetaDatos()).keys())
        QVERIFY2(fichero.contains(u"AddressBook"_s), qPrintable(fichero));
    int conFoto = 0;
    for (const auto &uno : lista.lista())
        conFoto += lista.foto(uno.id).startsWith("\xff\xd8") ? 1 : 0;
    QVERIFY(conFoto > 0);
    const auto alguien = std::find_if(lista.lista().begin(), lista.lista().end(),
                                      [](const Contacto &uno) { return uno.telefonos.value(0).contains(u' '); });
    QVERIFY(alguien != lista.lista().end());
    lista.ponBusqueda(QString(alguien->telefonos[0]).remove(u' '));
    QVERIFY(lista.filtrados().contains(*alguien));
    lista.ponBusqueda(alguien->comoSeLlama().toUpper());
    QVERIFY(lista.filtrados().contains(*alguien));
    const auto fichero = casa.ruta(u"todos.csv"_s);
    lista.exportar(Contactos::Hoja, fichero);
    QTRY_COMPARE(lista.aviso(), u"Guardados %1 contactos."_s.arg(lista.lista().size()));
    lista.exportar(Contactos::VCard, u"/proc/c.vcf"_s);
    QTRY_COMPARE(lista.aviso(), u"No se pudo guardar."_s);
    // Without an address book service nothing is said to have been done.
    lista.elegir(0);
    lista.copiarAlMac();
    QVERIFY(lista.guardando());
    lista.copiarAlMac(); // a second press while the first is at work does nothing
    QTRY_COMPARE_WITH_TIMEOUT(lista.aviso(),
                              u"El Mac no me deja tocar los Contactos. Actívalo en Ajustes del Sistema › Privacidad."_s,
                              20'000);
    lista.guardar(false, u"Nueva"_s, {}, {}, {}, {});
    QTRY_VERIFY_WITH_TIMEOUT(!lista.guardando(), 20'000);
    QVERIFY(lista.falloAlGuardar().contains(u"Privacidad y seguridad › Contactos"_s));
}

/// People who were taken out are those of the last backup, not of the one before.
void PruebaDeLaCopia::contactosDeUnaCopiaNueva()
{
    ponCopia({});
    Contactos lista(*modelo, [](const QByteArray &) { return true; });
    lista.leer();
    QTRY_VERIFY_WITH_TIMEOUT(!lista.cargando(), 60'000);
    const auto antes = lista.lista().size();
    const auto agenda = casa.telefono() + u"/HomeDomain/Library/AddressBook/AddressBook.sqlitedb"_s;
    QString base = QFile::exists(agenda) ? agenda : QString();
    QDirIterator recorrido(casa.telefono(), {u"AddressBook.sqlitedb"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (base.isEmpty() && recorrido.hasNext())
        base = recorrido.next();
    QVERIFY(!base.isEmpty());
    QVERIFY(CopiaDePrueba::sql(base, "INSERT INTO ABPerson (First, Last) VALUES ('Recién','Llegada');"));
    QTest::qWait(1100); // dates of files may have a resolution of a second
    ponCopia({});
    lista.leer();
    QTRY_VERIFY_WITH_TIMEOUT(!lista.cargando(), 60'000);
    QCOMPARE(lista.lista().size(), antes + 1);
}

void PruebaDeLaCopia::contactosMientrasSeTrabaja()
{
    ponCopia({});
    QVERIFY(QDir(modelo->carpetaDatos()).removeRecursively());
    Contactos lista(*modelo, [](const QByteArray &) { return true; });
    // Two jobs, one after the other: nothing is read before the last has ended.
    for (int i = 0; i < 2; ++i) {
        modelo->tarea().empezar(u"Otra cosa"_s, QString());
        lista.leer();
        QVERIFY(lista.esperando() && lista.cargando() && lista.vacia());
        QTest::qWait(300);
        QVERIFY(lista.esperando() && !QFile::exists(modelo->carpetaDatos()));
        modelo->tarea().cerrar(true);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!lista.vacia(), 60'000);
    QVERIFY(!lista.esperando() && !lista.cargando() && !lista.motivo());
}

void PruebaDeLaCopia::porQueNoHayNadie()
{
    const auto motivo = [this] {
        Contactos lista(*modelo, [](const QByteArray &) { return true; });
        lista.leer();
        return QTest::qWaitFor([&] { return !lista.cargando(); }, 60'000) && lista.vacia()
                   ? lista.motivo().value_or(QString())
                   : u"(hay alguien)"_s;
    };
    const auto udidDeAqui = QString::fromLatin1(udid);
    QVERIFY(QDir(modelo->carpetaDatos()).removeRecursively());
    ponCopia(u"otra clave"_s);
    Llavero::borrar(udidDeAqui);
    QVERIFY2(motivo().contains(u"contraseña"_s), qPrintable(motivo()));
    ponCopia({});
    const auto copia = copias() + u'/' + udidDeAqui;
    QVERIFY(CopiaDePrueba::sql(copia + u"/Manifest.db"_s,
                               "DELETE FROM Files WHERE relativePath LIKE '%AddressBook.sqlitedb%'"));
    QCOMPARE(motivo(), u"La copia no trae la agenda del iPhone."_s);
    QVERIFY(QDir(modelo->carpetaDatos()).removeRecursively());
}

void PruebaDeLaCopia::sinCopia()
{
    Contactos lista(*modelo, [](const QByteArray &) { return true; });
    lista.leer();
    QCOMPARE(lista.motivo(), u"No hay ninguna copia de seguridad."_s);
    Contrasenas claves(*modelo);
    claves.leer();
    QCOMPARE(claves.estado(), u"fallo"_s);
    QCOMPARE(claves.fallo(), u"No encuentro ninguna copia de seguridad."_s);
}

void PruebaDeLaCopia::contrasenas()
{
    ponCopia(QString::fromLatin1(claveDeCopia));
    QVERIFY(Llavero::guardar(QString::fromLatin1(claveDeCopia), QString::fromLatin1(udid)));
    Contrasenas claves(*modelo);
    claves.leer();
    // No process but the engine, and that one only at its very start, shows the password in its arguments; none has any
    // of it in its environment.
    while (modelo->tarea().enMarcha()) {
        for (const auto &proceso : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
            QFile entorno(u"/proc/%1/environ"_s.arg(proceso));
            QFile orden(u"/proc/%1/cmdline"_s.arg(proceso));
            if (!proceso.front().isDigit() || !orden.open(QIODevice::ReadOnly))
                continue;
            const auto argumentos = orden.readAll();
            QVERIFY2(!marcado(argumentos) || argumentos.contains("contrasenas"), argumentos.constData());
            QVERIFY(!entorno.open(QIODevice::ReadOnly) || !marcado(entorno.readAll()));
        }
        QTest::qWait(1);
    }
    QCOMPARE(claves.estado(), u"listas"_s);
    QCOMPARE(claves.cuantas(), 39);
    QCOMPARE(claves.cerradas(), 1);
    QCOMPARE(modelo->tarea().terminadaBien(), true);
    QCOMPARE(modelo->tarea().detalle(), u"39 contraseñas"_s);
    // Hidden until asked for, one at a time.
    const auto clave = [&](int fila) {
        return claves.data(claves.index(fila), Contrasenas::PapelClave).toString();
    };
    QVERIFY(clave(0).isEmpty() && clave(1).isEmpty());
    claves.ver(1, true);
    QVERIFY(clave(0).isEmpty() && clave(1).startsWith(QString::fromLatin1(secreto)));
    claves.ver(1, false);
    QVERIFY(clave(1).isEmpty());
    claves.ponFiltro(u"internet"_s);
    const auto webs = claves.rowCount();
    QVERIFY(webs > 0 && webs < 39);
    claves.ponBusqueda(u"SITIO1."_s);
    QCOMPARE(claves.rowCount(), 1);
    claves.olvidar();
    QCOMPARE(claves.estado(), u"empezando"_s);
    QCOMPARE(claves.rowCount(), 0);
}

void PruebaDeLaCopia::portapapeles()
{
    auto *portapapeles = QGuiApplication::clipboard();
    const ClavesListas unas{{{QUuid::createUuid(), u"wifi"_s, u"Casa"_s, {}, u"una clave"_s}}, 0};
    {
        Contrasenas claves(*modelo);
        claves.aplicar(unas);
        claves.copiar(0);
        QCOMPARE(portapapeles->text(), u"una clave"_s);
        QCOMPARE(portapapeles->mimeData()->data(u"x-kde-passwordManagerHint"_s), QByteArray("secret"));
        // Still there when nobody would have had the time to paste it, and gone after half a minute.
        QTest::qWait(5000);
        QCOMPARE(portapapeles->text(), u"una clave"_s);
        QTRY_COMPARE_WITH_TIMEOUT(portapapeles->text(), QString(), 27'000);
        claves.copiar(0);
    }
    QCOMPARE(portapapeles->text(), QString()); // nor does it outlive the program
    {
        Contrasenas claves(*modelo);
        claves.aplicar(unas);
        claves.copiar(0);
        portapapeles->setText(u"de otro"_s);
    }
    QCOMPARE(portapapeles->text(), u"de otro"_s);
}

void PruebaDeLaCopia::alLlaveroYAUnArchivo()
{
    const auto clave = QString::fromLatin1(secreto) + u"a;b\nc"_s;
    Contrasenas claves(*modelo);
    claves.aplicar(ClavesListas{{{QUuid::createUuid(), u"wifi"_s, u"Casa; abuela"_s, {}, clave},
                                 {QUuid::createUuid(), u"internet"_s, u"sitio.es"_s, u"ana"_s, u"=1+1"_s}},
                                0});
    claves.guardarEnElLlavero(0);
    QTRY_VERIFY(claves.mensaje().contains(u"está en el Llavero"_s));
    QProcess almacen;
    almacen.start(u"secret-tool"_s, {u"lookup"_s, u"service"_s, u"es.vellora.contrasena"_s});
    almacen.waitForFinished();
    QCOMPARE(QString::fromUtf8(almacen.readAllStandardOutput()), clave);
    const auto fichero = casa.ruta(u"claves.csv"_s);
    claves.exportar(fichero);
    QCOMPARE(claves.mensaje(), u"Guardadas 2 contraseñas. El archivo solo lo puedes abrir tú."_s);
    QFile escrito(fichero);
    QVERIFY(escrito.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(escrito.readAll()), u"Tipo;Dónde;Usuario;Contraseña\nRed wifi;Casa, abuela;;"_s +
                                                       QString::fromLatin1(secreto) +
                                                       u"a,b c\nWeb;sitio.es;ana;=1+1\n"_s);
    QCOMPARE(escrito.permissions() & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    claves.exportar(u"/proc/claves.csv"_s);
    QVERIFY(claves.mensaje().startsWith(u"No se pudo guardar: "_s));
}

void PruebaDeLaCopia::losOtrosEstados()
{
    Contrasenas claves(*modelo);
    ponCopia({});
    QVERIFY(leer(claves));
    QCOMPARE(claves.estado(), u"sincifrar"_s);
    QCOMPARE(modelo->tarea().detalle(), u"La copia no está cifrada"_s);
    ponCopia(u"otra"_s); // not the one that is in the store
    QVERIFY(leer(claves));
    QCOMPARE(claves.estado(), u"fallo"_s);
    QVERIFY(!claves.fallo().isEmpty());
    QCOMPARE(modelo->tarea().terminadaBien(), false);
}

/// Looks for the marks in all that was written anywhere in the home, temporary files and journal included, but for what
/// the owner asked to be written and the backup itself, which does not show them either.
void PruebaDeLaCopia::nadaQuedaEscrito()
{
    ponCopia(QString::fromLatin1(claveDeCopia));
    Contrasenas claves(*modelo);
    QVERIFY(leer(claves));
    QCOMPARE(claves.cuantas(), 39);
    for (const auto &linea : modelo->tarea().registro())
        QVERIFY2(!marcado(linea.toUtf8()), qPrintable(linea));
    int mirados = 0;
    const auto todo = CopiaDePrueba::contenido(QDir::homePath());
    for (auto uno = todo.begin(); uno != todo.end(); ++uno) {
        if (uno.key().endsWith(u"claves.csv"_s) || uno.key().endsWith(u"llavero.json"_s))
            continue;
        ++mirados;
        QVERIFY2(!marcado(uno.value()), qPrintable(uno.key()));
    }
    QVERIFY(mirados > 20);
    QVERIFY(todo.keys().join(u' ').contains(u"actividad.json"_s));
}

/// Somebody has put a link to the owner's documents where the backup used to be unpacked.
void PruebaDeLaCopia::sacarSinPisarANadie()
{
    ponCopia({});
    const auto documentos = casa.ruta(u"Documentos"_s);
    QVERIFY(QDir().mkpath(documentos));
    QFile tesis(documentos + u"/tesis.odt"_s);
    QVERIFY(tesis.open(QIODevice::WriteOnly) && tesis.write("importante") > 0);
    tesis.close();
    const auto trampa = QDir::tempPath() + u"/vellora-extraccion"_s;
    QVERIFY(QFile::link(documentos, trampa));
    sacarMisDatos(modelo->tarea(), QString::fromLatin1(udid), copias(), modelo->carpetaDatos());
    QTRY_VERIFY_WITH_TIMEOUT(!modelo->tarea().enMarcha(), 60'000);
    QVERIFY(QFile::remove(trampa));
    QVERIFY2(modelo->tarea().terminadaBien().value_or(false), qPrintable(modelo->tarea().detalle()));
    QCOMPARE(QDir(documentos).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{u"tesis.odt"_s});
    QVERIFY(QFileInfo::exists(modelo->carpetaDatos() + u"/Notas.txt"_s));
    QVERIFY(sinTrabajo());
}

/// Nothing of a cancelled run stays, and nothing of it comes later.
void PruebaDeLaCopia::sacarYCancelar()
{
    ponCopia({});
    QDir(modelo->carpetaDatos()).removeRecursively();
    sacarMisDatos(modelo->tarea(), QString::fromLatin1(udid), copias(), modelo->carpetaDatos());
    modelo->tarea().cancelar();
    QTRY_VERIFY_WITH_TIMEOUT(sinTrabajo(), 20'000);
    QVERIFY(CopiaDePrueba::contenido(modelo->carpetaDatos()).isEmpty());
}

QTEST_MAIN(PruebaDeLaCopia)
#include "PruebaDeLaCopia.moc"
