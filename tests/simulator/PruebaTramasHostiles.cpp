#include "support/TelefonoSimulado.h"

#include <QJsonArray>
#include <QTest>
#include <QtEndian>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr quint32 cuerpoMaximo = 64 << 10;

template <typename T> QByteArray pequeno(T numero)
{
    QByteArray bytes(sizeof numero, '\0');
    qToLittleEndian(numero, bytes.data());
    return bytes;
}

/// The daemon's header: length, version 1, kind 8 (property list), tag.
QByteArray cabeza(quint32 largo)
{
    return pequeno(largo) + pequeno(quint32(1)) + pequeno(quint32(8)) + pequeno(quint32(7));
}

QByteArray alMux(const QByteArray &cuerpo)
{
    return cabeza(quint32(16 + cuerpo.size())) + cuerpo;
}

/// The same for the phone's own daemon and services: a big-endian length in front.
QByteArray alTelefono(const QByteArray &cuerpo)
{
    QByteArray largo(4, '\0');
    qToBigEndian(quint32(cuerpo.size()), largo.data());
    return largo + cuerpo;
}

QByteArray plist(const QByteArray &dentro)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" + dentro + "</plist>";
}

QByteArray anidado(int hondo)
{
    return plist(QByteArray("<array>").repeated(hondo) + QByteArray("</array>").repeated(hondo));
}

QByteArray texto(const QByteArray &clave, const QString &valor)
{
    return "<key>" + clave + "</key><string>" + valor.toUtf8() + "</string>";
}

QByteArray numero(const QByteArray &clave, int valor)
{
    return "<key>" + clave + "</key><integer>" + QByteArray::number(valor) + "</integer>";
}

/// A value of an XML answer, by its key.
QByteArray valorDe(const QByteArray &respuesta, const QByteArray &clave)
{
    const auto donde = respuesta.indexOf("<key>" + clave + "</key>");
    const auto desde = respuesta.indexOf('>', respuesta.indexOf('<', donde + clave.size() + 11)) + 1;
    return donde < 0 ? QByteArray() : respuesta.mid(desde, respuesta.indexOf('<', desde) - desde);
}

/// One raw connection to the simulated daemon's socket.
class Enchufe
{
public:
    Enchufe() : descriptor_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const auto ruta = qgetenv("USBMUXD_SOCKET_ADDRESS").mid(5);
        sockaddr_un direccion{};
        direccion.sun_family = AF_UNIX;
        qstrncpy(direccion.sun_path, ruta.constData(), sizeof direccion.sun_path);
        const timeval plazo{10, 0};
        setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &plazo, sizeof plazo);
        conectado_ = ::connect(descriptor_, reinterpret_cast<sockaddr *>(&direccion), sizeof direccion) == 0;
    }
    ~Enchufe() { close(descriptor_); }
    Enchufe(const Enchufe &) = delete;
    Enchufe &operator=(const Enchufe &) = delete;

    bool conectado() const { return conectado_; }
    /// The other side may hang up in the middle; that is an answer too.
    void decir(const QByteArray &bytes)
    {
        for (qsizetype dichos = 0; dichos < bytes.size();) {
            const auto n = send(descriptor_, bytes.constData() + dichos, size_t(bytes.size() - dichos), MSG_NOSIGNAL);
            if (n <= 0)
                return;
            dichos += n;
        }
    }
    QByteArray leer(qsizetype bytes)
    {
        QByteArray leido(bytes, '\0');
        const auto n = recv(descriptor_, leido.data(), size_t(bytes), MSG_WAITALL);
        return leido.first(std::max<qsizetype>(n, 0));
    }
    /// Body of the daemon's next message.
    QByteArray preguntar(const QByteArray &cuerpo)
    {
        decir(alMux(cuerpo));
        const auto largo = leer(16);
        return largo.size() == 16 ? leer(qFromLittleEndian<qint32>(largo.constData()) - 16) : QByteArray();
    }
    /// Body of the phone's next message.
    QByteArray preguntarAlTelefono(const QByteArray &cuerpo)
    {
        decir(alTelefono(cuerpo));
        const auto largo = leer(4);
        return largo.size() == 4 ? leer(qFromBigEndian<qint32>(largo.constData())) : QByteArray();
    }
    /// From here on the stream reaches that port of the phone.
    bool pasarA(int puerto)
    {
        const auto lista = preguntar(plist("<dict>" + texto("MessageType", u"ListDevices"_s) + "</dict>"));
        const auto enRed = qToBigEndian(quint16(puerto));
        const auto respuesta = preguntar(plist("<dict>" + texto("MessageType", u"Connect"_s) +
                                               numero("DeviceID", valorDe(lista, "DeviceID").toInt()) +
                                               numero("PortNumber", enRed) + "</dict>"));
        return valorDe(respuesta, "Number") == "0";
    }
    /// True when the other side hung up without a word.
    bool colgado()
    {
        char nada = 0;
        const auto n = recv(descriptor_, &nada, 1, 0);
        return n == 0 || (n < 0 && errno == ECONNRESET);
    }

private:
    int descriptor_;
    bool conectado_ = false;
};

constexpr int puertoLockdown = 62078;

} // namespace

/// Frames that no honest program sends: each ends its own connection at most, never the simulated phone.
class PruebaTramasHostiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { telefono.reset(); }
    void cleanup();
    void alDemonio_data();
    void alDemonio();
    void hondoEnElTelefono();
    void dosSesiones();
    void cargasDeFicheros_data();
    void cargasDeFicheros();
    void puertosSinUsar();

private:
    /// A session with lockdown, in clear.
    bool abrirSesion(Enchufe &enchufe) const;
    static int puertoDe(Enchufe &enchufe, const QString &servicio);

    const QString udid = u"00008120-00000000004C1E9A"_s;
    std::unique_ptr<TelefonoSimulado> telefono;
    QString host;
};

void PruebaTramasHostiles::initTestCase()
{
    telefono = std::make_unique<TelefonoSimulado>(
        QJsonObject{{u"telefonos"_s, QJsonArray{QJsonObject{{u"udid"_s, udid}, {u"tls"_s, false}}}}});
    QVERIFY2(telefono->listo(), qPrintable(telefono->motivo()));
    Enchufe enchufe;
    const auto registro = enchufe.preguntar(
        plist("<dict>" + texto("MessageType", u"ReadPairRecord"_s) + texto("PairRecordID", udid) + "</dict>"));
    const auto dentro = QByteArray::fromBase64(valorDe(registro, "PairRecordData").simplified().replace(' ', ""));
    host = QString::fromLatin1(valorDe(dentro, "HostID"));
    QVERIFY(!host.isEmpty());
}

/// After each frame, the real tool must find the phone.
void PruebaTramasHostiles::cleanup()
{
    QCOMPARE(ejecutar(u"/usr/bin/idevice_id"_s, {u"-l"_s}, 20).salida.trimmed(), udid.toUtf8());
}

bool PruebaTramasHostiles::abrirSesion(Enchufe &enchufe) const
{
    const auto orden = texto("Request", u"StartSession"_s) + texto("HostID", host);
    return enchufe.pasarA(puertoLockdown) &&
           enchufe.preguntarAlTelefono(plist("<dict>" + orden + "</dict>")).contains("SessionID");
}

int PruebaTramasHostiles::puertoDe(Enchufe &enchufe, const QString &servicio)
{
    const auto orden = texto("Request", u"StartService"_s) + texto("Service", servicio);
    return valorDe(enchufe.preguntarAlTelefono(plist("<dict>" + orden + "</dict>")), "Port").toInt();
}

void PruebaTramasHostiles::alDemonio_data()
{
    QTest::addColumn<QByteArray>("trama");
    QTest::addColumn<bool>("cuelga"); // or else it answers
    QTest::newRow("short header") << cabeza(100).first(7) << true;
    QTest::newRow("length 0") << cabeza(0) << true;
    QTest::newRow("length below the header") << cabeza(15) << true;
    QTest::newRow("huge length") << cabeza(0xffffffff) << true;
    QTest::newRow("no body") << cabeza(16) << false;
    QTest::newRow("not a property list") << alMux(QByteArray(1000, '\xfe')) << false;
    QTest::newRow("nested, within the cap") << alMux(anidado(int(cuerpoMaximo / 16))) << false;
    QTest::newRow("nested, over the cap") << alMux(anidado(20'000)) << true;
}

void PruebaTramasHostiles::alDemonio()
{
    QFETCH(QByteArray, trama);
    QFETCH(bool, cuelga);
    Enchufe enchufe;
    QVERIFY(enchufe.conectado());
    enchufe.decir(trama);
    if (trama.size() < 16)
        return; // it waits for the rest, which never comes
    if (cuelga)
        QVERIFY(enchufe.colgado());
    else
        QCOMPARE(enchufe.leer(16).size(), 16);
}

void PruebaTramasHostiles::hondoEnElTelefono()
{
    Enchufe enchufe;
    QVERIFY(enchufe.pasarA(puertoLockdown));
    QVERIFY(enchufe.preguntarAlTelefono(anidado(20'000)).contains("InvalidRequest"));
}

void PruebaTramasHostiles::dosSesiones()
{
    Enchufe enchufe;
    QVERIFY(abrirSesion(enchufe));
    enchufe.decir(alTelefono("basura"));
    QVERIFY(enchufe.colgado());
}

void PruebaTramasHostiles::cargasDeFicheros_data()
{
    QTest::addColumn<quint64>("operacion");
    QTest::addColumn<quint64>("largo");
    QTest::addColumn<quint64>("cabeza");
    constexpr quint64 listar = 3;
    constexpr quint64 escribir = 16;
    QTest::newRow("listing with 2^63") << listar << (quint64(1) << 63) + 40 << quint64(40);
    QTest::newRow("writing 2^63") << escribir << (quint64(1) << 63) + 48 << quint64(48);
    QTest::newRow("listing with 2^40") << listar << (quint64(1) << 40) + 40 << quint64(40);
    QTest::newRow("head of 2^62") << listar << (quint64(1) << 62) << (quint64(1) << 62);
    QTest::newRow("shorter than its head") << listar << quint64(40) << quint64(48);
}

void PruebaTramasHostiles::cargasDeFicheros()
{
    QFETCH(quint64, operacion);
    QFETCH(quint64, largo);
    QFETCH(quint64, cabeza);
    Enchufe lockdown;
    QVERIFY(abrirSesion(lockdown));
    const auto puerto = puertoDe(lockdown, u"com.apple.afc"_s);
    Enchufe afc;
    QVERIFY(puerto > 0 && afc.pasarA(puerto));
    afc.decir("CFA6LPAA" + pequeno(largo) + pequeno(cabeza) + pequeno(quint64(1)) + pequeno(operacion) +
              QByteArray(8, '\0'));
    QVERIFY(afc.colgado());
}

void PruebaTramasHostiles::puertosSinUsar()
{
    Enchufe lockdown;
    QVERIFY(abrirSesion(lockdown));
    const auto primero = puertoDe(lockdown, u"com.apple.afc"_s);
    auto ultimo = primero;
    for (int i = 0; i < 10'500; ++i)
        ultimo = puertoDe(lockdown, u"com.apple.afc"_s);
    QVERIFY(ultimo > 0);
    QVERIFY2(Enchufe().pasarA(ultimo), "the newest port must answer");
    QVERIFY2(!Enchufe().pasarA(primero + 600), "a port that nobody came for must be forgotten");
}

QTEST_GUILESS_MAIN(PruebaTramasHostiles)
#include "PruebaTramasHostiles.moc"
