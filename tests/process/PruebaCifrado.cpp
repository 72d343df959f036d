#include "core/FicheroDelDiario.h"
#include "core/Plist.h"
#include "platform/Llavero.h"
#include "support/BusPrivado.h"
#include "support/CopiaDePrueba.h"
#include "support/LlaveroPrivado.h"
#include "support/TelefonoSimulado.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

const auto clave = u"rosquillas ñ 1957"_s;
const auto herramienta = u"/usr/bin/idevicebackup2"_s;

struct Dicho {
    int codigo = -1;
    QString detalle;
    QStringList registro;
    QString carpeta;
};

/// Runs the program; `entrada` comes to its standard input.
Dicho correr(QStringList orden, const QByteArray &entrada = {})
{
    const auto fichero = QDir::homePath() + u"/entrada"_s;
    QFile archivo(fichero);
    if (!archivo.open(QIODevice::WriteOnly) || archivo.write(entrada) != entrada.size())
        return {};
    archivo.close();
    QProcess proceso;
    proceso.setStandardInputFile(fichero);
    proceso.start(QStringLiteral(VELLORA), orden << u"--json"_s);
    const bool acabo = proceso.waitForFinished(120000);
    archivo.remove();
    const auto objeto = QJsonDocument::fromJson(proceso.readAllStandardOutput()).object();
    Dicho dicho{acabo ? proceso.exitCode() : -1, objeto["detalle"_L1].toString(), {}, objeto["carpeta"_L1].toString()};
    for (const auto &linea : objeto["registro"_L1].toArray())
        dicho.registro << linea.toString();
    return dicho;
}

} // namespace

/// Encryption from its beginning to the files that the owner opens: the program, the true backup tool, a true secret
/// service and the simulated phone.
class PruebaCifrado : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void clavesQueNoValen_data();
    void clavesQueNoValen();
    void cifrarCopiarYSacar();
    void loQueNoSePuedeAbrir();
    void yaCifradoConOtraClave();
    void cambiarYQuitarConLaHerramienta();
    void devolverUnaCopiaCifrada();
    void elMotorAcabaCuandoSeLePide();

private:
    bool ponerClave(const QString &cual)
    {
        return telefono->orden({{u"orden"_s, u"clave_de_copia"_s}, {u"clave"_s, cual}, {u"rondas"_s, 1000}})["bien"_L1]
            .toBool();
    }
    QString copiaDelTelefono() const
    {
        return QDir::homePath() + u"/Vellora/iPhone de Marta/Copias de seguridad/"_s + telefono->udid();
    }

    std::unique_ptr<BusPrivado> bus;
    std::unique_ptr<LlaveroPrivado> llavero;
    std::unique_ptr<TelefonoSimulado> telefono;
};

void PruebaCifrado::initTestCase()
{
    bus = std::make_unique<BusPrivado>();
    llavero = std::make_unique<LlaveroPrivado>();
    QVERIFY(llavero->listo());
    telefono = std::make_unique<TelefonoSimulado>();
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
}

void PruebaCifrado::init()
{
    QVERIFY(ponerClave({}));
    Llavero::borrar(telefono->udid());
}

void PruebaCifrado::clavesQueNoValen_data()
{
    QTest::addColumn<QByteArray>("entrada");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("an empty line") << QByteArray("\n");
    QTest::newRow("five letters") << QByteArray("ñandú\n");
}

void PruebaCifrado::clavesQueNoValen()
{
    QFETCH(QByteArray, entrada);
    QCOMPARE(correr({u"cifrar"_s}, entrada).codigo, 1);
    QVERIFY(!Llavero::hayClave(telefono->udid()));
}

void PruebaCifrado::cifrarCopiarYSacar()
{
    const auto activado = correr({u"cifrar"_s}, clave.toUtf8() + "\nesto ya no\n");
    QCOMPARE(activado.codigo, 0);
    QCOMPARE(activado.detalle, u"Cifrado activado"_s);
    QCOMPARE(Llavero::leer(telefono->udid()), std::optional(clave));

    const auto copiado = correr({u"copia"_s});
    QCOMPARE(copiado.codigo, 0);
    QVERIFY(copiado.registro.contains(u"Backup will be encrypted."_s));
    QCOMPARE(copiado.carpeta, copiaDelTelefono());
    QCOMPARE(Plist::leer(copiaDelTelefono() + u"/Manifest.plist"_s)->raiz()["IsEncrypted"].logico(), true);
    // A second one on top of it sends only what is new, under the same keys.
    QCOMPARE(correr({u"copia"_s}).codigo, 0);

    QVERIFY(telefono->orden(u"desconectar"_s));
    const auto sacado = correr({u"datos"_s});
    QVERIFY(telefono->orden(u"conectar"_s));
    QVERIFY2(sacado.codigo == 0, qPrintable(sacado.registro.join(u'\n')));
    for (const auto &cosa : {u"Mensajes: "_s, u"WhatsApp: "_s, u"Grabadora: "_s, u"Contactos: "_s, u"Llamadas: "_s,
                             u"Notas: "_s, u"Calendario: "_s, u"Recordatorios: "_s, u"Safari: "_s, u"Salud: "_s,
                             u"Buzón de voz: "_s, u"Conversaciones: "_s})
        QVERIFY2(!sacado.registro.filter(cosa).isEmpty(), qPrintable(cosa));
    QVERIFY(sacado.registro.filter(u"Lo que NO sale"_s).isEmpty());
    QCOMPARE(sacado.detalle, u"12 tipos de datos guardados"_s);
    QVERIFY(QFile::exists(sacado.carpeta + u"/Llamadas.csv"_s));
    QVERIFY(!QFile::exists(QDir::tempPath() + u"/vellora-extraccion"_s));

    // The password stands in the store and nowhere else.
    const auto casa = CopiaDePrueba::contenido(QDir::homePath());
    for (auto it = casa.cbegin(); it != casa.cend(); ++it)
        QVERIFY2(!it.value().contains("rosquillas"), qPrintable(it.key()));
    QVERIFY(!leerDiario(Diario::ficheroPorDefecto()).isEmpty());
}

void PruebaCifrado::loQueNoSePuedeAbrir()
{
    QVERIFY(ponerClave(clave));
    QVERIFY(Llavero::guardar(clave, telefono->udid()));
    QCOMPARE(correr({u"copia"_s}).codigo, 0);
    const auto fallo = [](const Dicho &dicho, const QString &detalle, const QString &linea) {
        return dicho.codigo == 1 && dicho.detalle == detalle && !dicho.registro.filter(linea).isEmpty();
    };
    QVERIFY(Llavero::guardar(u"otra cosa"_s, telefono->udid()));
    QVERIFY(fallo(correr({u"datos"_s}), u"No se pudo abrir la copia"_s,
                  u"La contraseña guardada no es la de esta copia."_s));
    QVERIFY(Llavero::borrar(telefono->udid()));
    QVERIFY(fallo(correr({u"datos"_s}), u"No se pudo abrir la copia"_s,
                  u"La copia está cifrada y en este ordenador no está guardada su contraseña."_s));
    QVERIFY(QFile::rename(copiaDelTelefono() + u"/Manifest.db"_s, copiaDelTelefono() + u"/otro"_s));
    QVERIFY(fallo(correr({u"datos"_s}), u"La copia está incompleta"_s, u"Hay una copia a medias, sin terminar."_s));
    QVERIFY(QDir(copiaDelTelefono()).removeRecursively());
    QVERIFY(fallo(correr({u"datos"_s}), u"Primero hay que hacer la copia"_s, u"Todavía no hay ninguna copia"_s));

    // In clear it opens without a password, and says what is missing.
    QVERIFY(ponerClave({}));
    // Nobody has said that it may go without.
    const auto parada = correr({u"copia"_s});
    QCOMPARE(parada.codigo, 1);
    QVERIFY(parada.registro.last().startsWith(u"El iPhone iba a hacer la copia sin cifrar"_s));
    QVERIFY(!QFile::exists(copiaDelTelefono()));
    QCOMPARE(correr({u"copia"_s, u"--sin-cifrar"_s}).codigo, 0);
    const auto destino = QDir::homePath() + u"/mis cosas ñ"_s;
    const auto sacado = correr({u"datos"_s, u"--a"_s, destino});
    QCOMPARE(sacado.codigo, 0);
    QCOMPARE(sacado.carpeta, destino);
    QVERIFY(sacado.registro.last().startsWith(u"Lo que NO sale porque la copia no está cifrada"_s));
    QVERIFY(QFile::exists(destino + u"/Notas.txt"_s) && !QFile::exists(destino + u"/Llamadas.csv"_s));
}

void PruebaCifrado::yaCifradoConOtraClave()
{
    QVERIFY(ponerClave(u"la que nadie sabe"_s));
    const auto dicho = correr({u"cifrar"_s}, "otra distinta\n");
    QCOMPARE(dicho.codigo, 1);
    QVERIFY2(dicho.detalle.startsWith(u"No se pudo activar (código "_s), qPrintable(dicho.detalle));
    QVERIFY(!Llavero::hayClave(telefono->udid()));
}

void PruebaCifrado::cambiarYQuitarConLaHerramienta()
{
    QVERIFY(ponerClave(u"primera"_s));
    const auto cambio = [this](const QStringList &orden) {
        return ejecutar(herramienta, QStringList{u"-u"_s, telefono->udid(), u"encryption"_s} + orden).codigo;
    };
    const QStringList cambiar{u"changepw"_s, u"primera"_s, u"segunda"_s};
    QVERIFY(ejecutar(herramienta, {u"-u"_s, telefono->udid(), u"changepw"_s, u"mala"_s, u"segunda"_s}).codigo != 0);
    QCOMPARE(ejecutar(herramienta, QStringList{u"-u"_s, telefono->udid()} + cambiar).codigo, 0);
    QVERIFY(cambio({u"off"_s, u"primera"_s}) != 0);
    QVERIFY(cambio({u"on"_s, u"otra más"_s}) != 0); // it is on already
    QCOMPARE(cambio({u"off"_s, u"segunda"_s}), 0);
    QVERIFY(cambio({u"off"_s, u"segunda"_s}) != 0);
}

void PruebaCifrado::devolverUnaCopiaCifrada()
{
    QVERIFY(ponerClave(clave));
    QCOMPARE(correr({u"copia"_s}).codigo, 0);
    const auto copias = QFileInfo(copiaDelTelefono()).path();
    const auto devolver = [&](const QString &con) {
        return ejecutar(herramienta, {u"-u"_s, telefono->udid(), u"restore"_s, u"--password"_s, con, u"--no-reboot"_s,
                                      u"--skip-apps"_s, copias});
    };
    const auto restaurado = telefono->contenido(telefono->udid()) + u"/restaurado"_s;
    QVERIFY(QDir(restaurado).removeRecursively());
    const auto mala = devolver(u"no es esta"_s);
    QVERIFY(mala.codigo != 0 && (mala.salida + mala.palabras).contains("207"));
    QVERIFY(!QFile::exists(restaurado));
    const auto buena = devolver(clave);
    QVERIFY2(buena.codigo == 0, (buena.salida + buena.palabras).constData());
    const auto devuelto = arbol(restaurado);
    const auto original = arbol(telefono->contenido(telefono->udid()) + u"/dominios"_s);
    for (auto it = original.cbegin(); it != original.cend(); ++it)
        QVERIFY2(devuelto.value(it.key()) == it.value(), qPrintable(it.key()));
    QVERIFY(original.size() > 30);
}

void PruebaCifrado::elMotorAcabaCuandoSeLePide()
{
    // With the rounds of a true phone the key takes seconds, and that call cannot be cut short.
    const CopiaDePrueba copias;
    QVERIFY(copias.crearTelefono() && copias.copiar(u"copias/U"_s, clave, 10'000'000));
    QVERIFY(Llavero::guardar(clave, u"U"_s));
    QProcess motor;
    motor.start(QStringLiteral(MOTOR), {u"extraer"_s, u"U"_s, copias.ruta(u"copias"_s), copias.ruta(u"destino"_s)});
    QVERIFY(motor.waitForReadyRead(20000)); // it is at the key
    motor.terminate();
    QVERIFY(motor.waitForFinished(3000));
    QCOMPARE(motor.exitStatus(), QProcess::NormalExit);
    QCOMPARE(motor.exitCode(), 143);
    QVERIFY(CopiaDePrueba::contenido(copias.ruta(u"destino"_s)).isEmpty());
}

QTEST_GUILESS_MAIN(PruebaCifrado)
#include "PruebaCifrado.moc"
