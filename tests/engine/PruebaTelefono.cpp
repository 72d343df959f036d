#include "engine/device/Afc.h"
#include "engine/device/Servicios.h"
#include "support/TelefonoSimulado.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

namespace
{

QByteArray leido(const QString &ruta)
{
    QFile fichero(ruta);
    return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray("(no se lee)");
}

QByteArray leido(Afc &afc, const QString &ruta)
{
    QByteArray todo;
    const auto bytes = afc.leer(ruta, [&todo](QByteArrayView trozo) {
        todo += trozo;
        return true;
    });
    return bytes && *bytes == todo.size() ? todo : QByteArray("(no se lee)");
}

} // namespace

/// The layer over the C library against the simulated phone.
class PruebaTelefono : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        std::signal(SIGPIPE, SIG_IGN); // as the engine does
        simulado = std::make_unique<TelefonoSimulado>();
        QVERIFY2(simulado->listo(), qPrintable(simulado->motivo()));
        telefono = std::make_unique<Resultado<Telefono>>(Telefono::buscar(simulado->udid()));
        QVERIFY(*telefono);
    }
    void cleanup()
    {
        telefono.reset();
        simulado.reset();
    }
    void valores();
    void noDejaEntrar();
    void ficheros();
    void ficherosQueFallan();
    void cableFuera();
    void apps();
    void registroYPerfiles();
    void informesYDocumentos();

private:
    std::unique_ptr<TelefonoSimulado> simulado;
    std::unique_ptr<Resultado<Telefono>> telefono;

    QString media() const { return simulado->contenido(simulado->udid()) + u"/media"_s; }
};

void PruebaTelefono::valores()
{
    const auto sesion = (*telefono)->sesion();
    QVERIFY2(sesion, qPrintable(sesion.motivo()));
    QCOMPARE(sesion->valor(nullptr, "DeviceName")->raiz().texto(), u"iPhone de Marta"_s);
    QCOMPARE(sesion->valor("com.apple.disk_usage", nullptr)->raiz()["AmountDataAvailable"].entero(), 38200000000);
    QVERIFY(!sesion->valor("com.apple.nada", "Nada"));
    const auto nada = sesion->servicio("com.apple.no-existe");
    QCOMPARE(nada.motivo(), u"Este iPhone no ofrece lo que hace falta para eso."_s);
}

void PruebaTelefono::noDejaEntrar()
{
    const auto porque = [this] {
        return (*telefono)->sesion().motivo();
    };
    QVERIFY(Telefono::buscar(u"00008120-0000000000000000"_s).motivo().startsWith(u"No veo ese iPhone."_s));
    QVERIFY(simulado->orden(u"bloquear"_s));
    QVERIFY(porque().startsWith(u"El iPhone está bloqueado."_s));
    QVERIFY(!Afc::abrir(**telefono));
    QVERIFY(simulado->orden(u"desbloquear"_s));
    QCOMPARE(porque(), QString());
    QVERIFY(simulado->orden({{u"orden"_s, u"olvidar"_s}, {u"conservar_registro"_s, true}})[u"bien"_s].toBool());
    QVERIFY2(porque().contains(u"Confiar"_s), qPrintable(porque()));
    QVERIFY(simulado->orden(u"denegar"_s));
    QVERIFY(porque().startsWith(u"En el iPhone se ha tocado «No confiar»."_s));
    QVERIFY(simulado->orden({{u"orden"_s, u"confiar"_s}, {u"con_registro"_s, true}})[u"bien"_s].toBool());
    QCOMPARE(porque(), QString());
    QVERIFY(simulado->orden(u"desconectar"_s));
    QVERIFY(!porque().isEmpty());
}

void PruebaTelefono::ficheros()
{
    auto afc = Afc::abrir(**telefono);
    QVERIFY2(afc, qPrintable(afc.motivo()));
    QDir carpeta(media() + u"/DCIM"_s);
    const auto nombres = afc->listar(u"/DCIM"_s);
    QVERIFY(nombres);
    QCOMPARE(QSet(nombres->begin(), nombres->end()), QSet<QString>([&] {
                 const auto locales = carpeta.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
                 return QSet(locales.begin(), locales.end());
             }()));
    QCOMPARE(afc->ficha(u"/DCIM"_s)->tipo, FichaAfc::Tipo::Carpeta);

    const auto album = u"/DCIM/"_s + nombres->first();
    const auto fotos = afc->listar(album);
    QVERIFY(fotos && fotos->size() > 2);
    for (const auto &foto : *fotos) {
        const auto ruta = album + u'/' + foto;
        const auto ficha = afc->ficha(ruta);
        const QFileInfo local(media() + ruta);
        QVERIFY(ficha && ficha->tipo == FichaAfc::Tipo::Fichero);
        QCOMPARE(ficha->tamano, local.size());
        QCOMPARE(ficha->modificado, local.lastModified());
        QVERIFY(ficha->nacimiento > 0 && ficha->bloques > 0 && ficha->enlaces == 1);
        QCOMPARE(ficha->modificacion / 1'000'000, local.lastModified().toMSecsSinceEpoch());
        QCOMPARE(leido(*afc, ruta), leido(local.filePath()));
    }

    // Larger than one block, with a name that a careless path would lose.
    QByteArray grande(3 * 1024 * 1024 + 17, 'x');
    for (qsizetype i = 0; i < grande.size(); i += 4099)
        grande[i] = static_cast<char>(i);
    QVERIFY(!afc->crearCarpeta(u"/Envíos/ñ ü"_s));
    qsizetype dado = 0;
    const auto escritos = afc->escribir(u"/Envíos/ñ ü/á'\"`.bin"_s, [&] {
        const auto trozo = grande.mid(dado, 700'001);
        dado += trozo.size();
        return trozo;
    });
    QCOMPARE(*escritos, qint64(grande.size()));
    QVERIFY(!afc->renombrar(u"/Envíos/ñ ü/á'\"`.bin"_s, u"/Envíos/b.bin"_s));
    QCOMPARE(leido(media() + u"/Envíos/b.bin"_s), grande);
    QCOMPARE(leido(*afc, u"/Envíos/b.bin"_s), grande);
    qint64 solo = 0;
    QVERIFY(afc->leer(u"/Envíos/b.bin"_s, [&solo](QByteArrayView trozo) {
        solo += trozo.size();
        return false;
    }));
    QVERIFY(solo > 0 && solo < grande.size());
    QVERIFY(!afc->borrar(u"/Envíos/b.bin"_s));
    QVERIFY(!afc->borrarConLoDeDentro(u"/Envíos"_s));
    QVERIFY(!QFileInfo::exists(media() + u"/Envíos"_s));
    QVERIFY(!afc->perdido());
}

void PruebaTelefono::ficherosQueFallan()
{
    auto afc = Afc::abrir(**telefono);
    QVERIFY(afc);
    QCOMPARE(afc->ficha(u"/DCIM/nada.jpg"_s).motivo(), u"No está en el iPhone: /DCIM/nada.jpg"_s);
    QVERIFY(!afc->listar(u"/nada"_s) && !afc->leer(u"/nada"_s, [](QByteArrayView) { return true; }));
    QVERIFY(afc->borrar(u"/DCIM"_s)); // not empty
    QVERIFY(QFileInfo::exists(media() + u"/DCIM"_s));
    const auto foto = u"/DCIM/100APPLE/"_s + afc->listar(u"/DCIM/100APPLE"_s)->first();
    QVERIFY(simulado
                ->orden({{u"orden"_s, u"fallar"_s},
                         {u"peticion"_s, u"afc:Read"_s},
                         {u"error"_s, 20},
                         {u"veces"_s, 1}})[u"bien"_s]
                .toBool());
    QVERIFY(!afc->leer(foto, [](QByteArrayView) { return true; }));
    QVERIFY(!afc->perdido());
    QCOMPARE(leido(*afc, foto), leido(media() + foto));
    QVERIFY(simulado->orden({{u"orden"_s, u"llenar_disco"_s}, {u"lleno"_s, true}})[u"bien"_s].toBool());
    QCOMPARE(afc->crearCarpeta(u"/Otra"_s), u"El iPhone no tiene sitio."_s);
    QVERIFY(!afc->perdido());
}

void PruebaTelefono::cableFuera()
{
    auto afc = Afc::abrir(**telefono);
    QVERIFY(afc);
    const auto foto = u"/DCIM/100APPLE/"_s + afc->listar(u"/DCIM/100APPLE"_s)->first();
    QVERIFY(
        simulado->orden({{u"orden"_s, u"cortar"_s}, {u"servicio"_s, u"com.apple.afc"_s}, {u"bytes"_s, 0}})[u"bien"_s]
            .toBool());
    QElapsedTimer reloj;
    reloj.start();
    const auto cortada = afc->leer(foto, [](QByteArrayView) { return true; });
    QVERIFY(!cortada && afc->perdido());
    QVERIFY(!afc->listar(u"/DCIM"_s) && afc->borrar(foto));
    QVERIFY(reloj.elapsed() < 20000);
    QVERIFY(QFileInfo::exists(media() + foto));
    QVERIFY(simulado->orden(u"conectar"_s));
    const auto vuelto = Telefono::buscar(simulado->udid());
    QVERIFY(vuelto);
    auto otra = Afc::abrir(*vuelto);
    QVERIFY(otra);
    QCOMPARE(leido(*otra, foto), leido(media() + foto));
}

void PruebaTelefono::apps()
{
    const auto casa = simulado->contenido(simulado->udid());
    QSet<QString> instaladas;
    const auto descritas = QJsonDocument::fromJson(leido(casa + u"/apps/apps.json"_s)).array();
    for (const auto &app : descritas) {
        if (app[u"ApplicationType"_s].toString() == u"User"_s)
            instaladas << app[u"CFBundleIdentifier"_s].toString();
    }
    const auto instalacion = Instalacion::abrir(**telefono);
    QVERIFY2(instalacion, qPrintable(instalacion.motivo()));
    const auto lista = instalacion->apps("User", {u"CFBundleIdentifier"_s, u"CFBundleDisplayName"_s});
    QVERIFY2(lista, qPrintable(lista.motivo()));
    QSet<QString> oidas;
    for (quint32 i = 0; i < lista->raiz().tamano(); ++i) {
        oidas << lista->raiz().en(i)["CFBundleIdentifier"].texto().value_or(QString());
        QVERIFY(!lista->raiz().en(i)["Path"].texto()); // it was not asked for
    }
    QVERIFY(oidas.size() > 3);
    QCOMPARE(oidas, instaladas);

    const auto pantalla = PantallaDeInicio::abrir(**telefono);
    QVERIFY(pantalla);
    const auto whatsapp = u"net.whatsapp.WhatsApp"_s;
    QCOMPARE(pantalla->icono(whatsapp), leido(casa + u"/apps/"_s + whatsapp + u".png"_s));
    QVERIFY(!pantalla->icono(u"no.existe"_s));
    QVERIFY(pantalla->icono(whatsapp)); // one that is missing does not end the connection
}

void PruebaTelefono::registroYPerfiles()
{
    {
        const auto diagnostico = Diagnostico::abrir(**telefono);
        QVERIFY(diagnostico);
        const auto bateria = diagnostico->registro("AppleSmartBattery");
        QVERIFY(bateria);
        QVERIFY(bateria->raiz()["IORegistry"]["CycleCount"].entero().value_or(0) > 0);
        QVERIFY(!diagnostico->registro("NoExiste") ||
                !diagnostico->registro("NoExiste")->raiz()["IORegistry"]["CycleCount"].entero());
    }
    const auto perfiles = Perfiles::abrir(**telefono);
    QVERIFY(perfiles);
    const auto lista = perfiles->lista();
    QVERIFY2(lista, qPrintable(lista.motivo()));
    QCOMPARE(lista->raiz()["OrderedIdentifiers"].tamano(), 0U);
    QCOMPARE(lista->raiz()["Status"].texto(), u"Acknowledged"_s);
    const auto provisiones = Aprovisionamiento::abrir(**telefono);
    QVERIFY(provisiones && provisiones->perfiles());

    const auto diagnostico = Diagnostico::abrir(**telefono);
    QVERIFY(diagnostico && diagnostico->reiniciar());
    const auto eventos = simulado->orden(QJsonObject{{u"orden"_s, u"contar"_s}})[u"cuentas"_s][u"eventos"_s].toArray();
    QVERIFY(eventos.contains(u"restart"_s));
}

void PruebaTelefono::informesYDocumentos()
{
    const auto casa = simulado->contenido(simulado->udid());
    QVERIFY(QDir().mkpath(casa + u"/informes/Retired"_s));
    QFile informe(casa + u"/informes/Fallo-2024.ips"_s);
    QVERIFY(informe.open(QIODevice::WriteOnly));
    informe.write("{\"app_name\":\"Fotos\"}\n");
    informe.close();
    auto informes = Afc::informesDeFallos(**telefono);
    QVERIFY2(informes, qPrintable(informes.motivo()));
    const auto nombres = informes->listar(u"/"_s);
    QVERIFY(nombres->contains(u"Fallo-2024.ips"_s) && nombres->contains(u"Retired"_s));
    QCOMPARE(leido(*informes, u"/Fallo-2024.ips"_s), leido(informe.fileName()));

    const auto app = u"net.whatsapp.WhatsApp"_s;
    {
        auto documentos = Afc::documentosDe(**telefono, app);
        QVERIFY2(documentos, qPrintable(documentos.motivo()));
        bool queda = true;
        QVERIFY(documentos->escribir(u"/Documents/nota.txt"_s, [&queda] {
            return std::exchange(queda, false) ? QByteArray("hola") : QByteArray();
        }));
    }
    QCOMPARE(leido(casa + u"/documentos/"_s + app + u"/Documents/nota.txt"_s), QByteArray("hola"));
    QVERIFY(Afc::documentosDe(**telefono, u"no.existe"_s).motivo().startsWith(u"Esa app no está"_s));
}

QTEST_GUILESS_MAIN(PruebaTelefono)
#include "PruebaTelefono.moc"
