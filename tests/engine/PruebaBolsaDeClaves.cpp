#include "engine/backup/BolsaDeClaves.h"

#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;
using namespace vellora::motor;

namespace
{

QByteArray numero(quint32 valor)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(valor, bytes.data());
    return bytes;
}

QByteArray valor(const char *etiqueta, const QByteArray &bytes)
{
    return etiqueta + numero(static_cast<quint32>(bytes.size())) + bytes;
}

Clave clave(char octeto)
{
    Clave llena;
    std::fill_n(llena.bytes(), Clave::largo, static_cast<unsigned char>(octeto));
    return llena;
}

QByteArray envolver(const Clave &con, const Clave &cual)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> contexto(EVP_CIPHER_CTX_new(),
                                                                                   &EVP_CIPHER_CTX_free);
    EVP_CIPHER_CTX_set_flags(contexto.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    EVP_EncryptInit_ex(contexto.get(), EVP_aes_256_wrap(), nullptr, con.bytes(), nullptr);
    QByteArray envuelta(largoEnvuelta, '\0');
    int escritos = 0;
    EVP_EncryptUpdate(contexto.get(), reinterpret_cast<unsigned char *>(envuelta.data()), &escritos, cual.bytes(),
                      Clave::largo);
    return envuelta;
}

/// A bag as a phone makes it, with few rounds; each part can be given otherwise.
struct Receta {
    QByteArray contrasena = "segura ñ";
    QByteArray sal = QByteArray(20, 's');
    quint32 rondas = 10;
    QByteArray salPrevia = QByteArray(20, 'p');
    quint32 rondasPrevias = 20;
    std::vector<std::pair<quint32, quint32>> clases{{3, 2}, {4, 2}, {9, 3}}; // class and WRAP

    QByteArray bytes() const
    {
        auto bolsa = valor("VERS", numero(5)) + valor("TYPE", numero(1)) + valor("UUID", QByteArray(16, 'u')) +
                     valor("HMCK", QByteArray(40, 'h')) + valor("WRAP", numero(0)) + valor("SALT", sal) +
                     valor("ITER", numero(rondas));
        if (!salPrevia.isEmpty())
            bolsa += valor("DPWT", numero(1)) + valor("DPIC", numero(rondasPrevias)) + valor("DPSL", salPrevia);
        for (const auto &[clase, envoltura] : clases)
            bolsa += valor("UUID", QByteArray(16, 'c')) + valor("CLAS", numero(clase)) +
                     valor("WRAP", numero(envoltura)) + valor("KTYP", numero(0)) +
                     valor("WPKY", envolver(deLaContrasena(), clave(static_cast<char>(clase))));
        return bolsa;
    }
    Clave deLaContrasena() const
    {
        const auto cuantas = [](quint32 pedidas) {
            return static_cast<int>(std::min(pedidas, 1000U));
        };
        const auto previa = derivar(contrasena, salPrevia, cuantas(rondasPrevias), Resumen::Sha256).value_or(Clave());
        const auto secreto =
            salPrevia.isEmpty() ? QByteArrayView(contrasena) : QByteArrayView(previa.bytes(), Clave::largo);
        return derivar(secreto, sal, cuantas(rondas), Resumen::Sha1).value_or(Clave());
    }
};

} // namespace

class PruebaBolsaDeClaves : public QObject
{
    Q_OBJECT

private slots:
    void seAbreConSuContrasena_data();
    void seAbreConSuContrasena();
    void unaClaseDanadaNoCierraLasOtras();
    void bolsasQueNoSeAbren_data();
    void bolsasQueNoSeAbren();
    void cortadaPorCualquierSitio();
    void clavesDeFichero();
};

void PruebaBolsaDeClaves::seAbreConSuContrasena_data()
{
    QTest::addColumn<QByteArray>("salPrevia");
    QTest::newRow("both derivations") << QByteArray(20, 'p');
    QTest::newRow("before iOS 10.2") << QByteArray();
}

void PruebaBolsaDeClaves::seAbreConSuContrasena()
{
    Receta receta;
    QFETCH(QByteArray, salPrevia);
    receta.salPrevia = salPrevia;
    const auto bolsa = BolsaDeClaves::leer(receta.bytes());
    QVERIFY2(bool(bolsa), qPrintable(bolsa.motivo()));
    const auto claves = bolsa->abrir(u"segura ñ"_s);
    QVERIFY(bool(claves));
    // Class 9 needs the phone's own key too.
    QCOMPARE(claves->porClase.size(), size_t(2));
    const auto cuarta = clave(4);
    QVERIFY(std::equal(cuarta.bytes(), cuarta.bytes() + Clave::largo, claves->porClase.at(4).bytes()));

    for (const auto &otra : {u"segura n"_s, u"segura ñ "_s, QString()}) {
        const auto ninguna = bolsa->abrir(otra);
        QVERIFY(!ninguna);
        QCOMPARE(ninguna.motivo(), u"La contraseña guardada no es la de esta copia."_s);
    }
}

void PruebaBolsaDeClaves::unaClaseDanadaNoCierraLasOtras()
{
    auto bytes = Receta().bytes();
    bytes[bytes.indexOf("WPKY") + 20] ^= 1;
    const auto bolsa = BolsaDeClaves::leer(bytes);
    QVERIFY(bool(bolsa));
    const auto claves = bolsa->abrir(u"segura ñ"_s);
    QVERIFY(bool(claves));
    QVERIFY(claves->porClase.contains(4) && !claves->porClase.contains(3));
}

void PruebaBolsaDeClaves::bolsasQueNoSeAbren_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("motivo");
    const auto danada = u"dañadas"_s;
    const auto con = [](auto cambio) {
        Receta receta;
        cambio(receta);
        return receta.bytes();
    };
    QTest::newRow("empty") << QByteArray() << danada;
    QTest::newRow("noise") << QByteArray(500, '\xC3') << danada;
    QTest::newRow("length beyond the end") << QByteArray("VERS\x7F\xFF\xFF\xFF"
                                                         "1234",
                                                         12)
                                           << danada;
    QTest::newRow("length of 2^32 - 1") << QByteArray("VERS\xFF\xFF\xFF\xFF"
                                                      "1234",
                                                      12)
                                        << danada;
    QTest::newRow("no salt") << con([](Receta &r) { r.sal.clear(); }) << danada;
    QTest::newRow("no rounds") << con([](Receta &r) { r.rondas = 0; }) << danada;
    QTest::newRow("no rounds before") << con([](Receta &r) { r.rondasPrevias = 0; }) << danada;
    QTest::newRow("2^31 rounds") << con([](Receta &r) { r.rondas = 1U << 31U; }) << u"desmedida"_s;
    QTest::newRow("2^31 rounds before") << con([](Receta &r) { r.rondasPrevias = 1U << 31U; }) << u"desmedida"_s;
    QTest::newRow("2^32 - 1 rounds before") << con([](Receta &r) { r.rondasPrevias = ~0U; }) << u"desmedida"_s;
    QTest::newRow("no classes") << con([](Receta &r) { r.clases.clear(); }) << danada;
    QTest::newRow("all need the phone") << con([](Receta &r) { r.clases = {{1, 3}}; }) << danada;
}

void PruebaBolsaDeClaves::bolsasQueNoSeAbren()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, motivo);
    const auto bolsa = BolsaDeClaves::leer(bytes);
    QVERIFY(!bolsa);
    QVERIFY2(bolsa.motivo().contains(motivo), qPrintable(bolsa.motivo()));
}

void PruebaBolsaDeClaves::cortadaPorCualquierSitio()
{
    const auto entera = Receta().bytes();
    for (qsizetype largo = 0; largo < entera.size(); ++largo) {
        const auto bolsa = BolsaDeClaves::leer(entera.first(largo));
        if (!bolsa)
            continue;
        // What is left of the classes still opens, or the password is refused; nothing else.
        const auto claves = bolsa->abrir(u"segura ñ"_s);
        QVERIFY(!claves || claves->porClase.size() <= 2);
    }
}

void PruebaBolsaDeClaves::clavesDeFichero()
{
    ClavesDeClase claves;
    claves.porClase.emplace(3, clave('3'));
    const auto envuelta = envolver(clave('3'), clave('f'));
    QVERIFY(claves.abrir(QByteArray("\3\0\0\0", 4) + envuelta).has_value());
    QVERIFY(!claves.abrir(QByteArray("\4\0\0\0", 4) + envuelta));           // a class that is not open
    QVERIFY(!claves.abrir(QByteArray("\3\0\0\0", 4) + envuelta.first(39))); // cut
    QVERIFY(!claves.abrir(QByteArray("\3\0\0", 3)));
    QVERIFY(!claves.abrir(QByteArray("\3\0\0\0", 4) + QByteArray(40, 'x'))); // the check fails
}

QTEST_GUILESS_MAIN(PruebaBolsaDeClaves)
#include "PruebaBolsaDeClaves.moc"
