#include "core/CarpetaDeDestino.h"
#include "core/CerrojoDeCarpeta.h"
#include "engine/backup/FicheroDescifrado.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vellora;
using namespace vellora::motor;

namespace
{

QByteArray cifrar(const Clave &clave, const QByteArray &claro)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> contexto(EVP_CIPHER_CTX_new(),
                                                                                   &EVP_CIPHER_CTX_free);
    const std::array<unsigned char, 16> ceros{};
    EVP_EncryptInit_ex(contexto.get(), EVP_aes_256_cbc(), nullptr, clave.bytes(), ceros.data());
    QByteArray cifrado(claro.size() + 16, '\0');
    auto *hasta = reinterpret_cast<unsigned char *>(cifrado.data());
    int escritos = 0;
    int ultimos = 0;
    EVP_EncryptUpdate(contexto.get(), hasta, &escritos, reinterpret_cast<const unsigned char *>(claro.constData()),
                      static_cast<int>(claro.size()));
    EVP_EncryptFinal_ex(contexto.get(), hasta + escritos, &ultimos);
    return cifrado.first(escritos + ultimos);
}

} // namespace

/// Where the engine writes: nothing leaves the folder, and nothing stands half-written under its own name.
class PruebaDestino : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        casa = std::make_unique<QTemporaryDir>();
        destino = casa->filePath(u"resultado ñ/dentro"_s);
    }
    void nombresDeFuera_data();
    void nombresDeFuera();
    void unEnlaceNoSeSigue_data();
    void unEnlaceNoSeSigue();
    void lasCarpetasNacenSoloParaSuDuena();
    void unTrabajoDejadoAMediasSeQuita();
    void unoSoloEscribe();
    void muchasCarpetasConPocosDescriptores();
    void elPasoDeUnFichero_data();
    void elPasoDeUnFichero();
    void discoLleno();

private:
    bool dejar(CarpetaDeDestino &carpeta, const QByteArray &relativa, const QByteArray &contenido)
    {
        const auto fichero = carpeta.nuevo(1);
        return fichero && write(*fichero, contenido.constData(), static_cast<size_t>(contenido.size())) >= 0 &&
               carpeta.colocar(1, relativa);
    }
    QByteArray contenido(const QString &ruta) const
    {
        QFile fichero(ruta);
        return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray("(no está)");
    }

    std::unique_ptr<QTemporaryDir> casa;
    QString destino;
};

void PruebaDestino::nombresDeFuera_data()
{
    QTest::addColumn<QByteArray>("relativa");
    QTest::addColumn<bool>("segura");
    QTest::newRow("a working name") << QByteArray(".vellora-parcial-1/x") << false;
    QTest::newRow("a working name further in") << QByteArray("a/.vellora-parcial-1") << true;
    QTest::newRow("plain") << QByteArray("WhatsApp/ChatStorage.sqlite") << true;
    QTest::newRow("blanks and letters of all kinds") << QByteArray("a b/ñ 😀 ; | * ? \" <>.txt") << true;
    QTest::newRow("line feed") << QByteArray("a\nb") << true;
    QTest::newRow("hidden") << QByteArray(".hidden/...") << true;
    QTest::newRow("255 bytes") << QByteArray(255, 'a') << true;
    QTest::newRow("256 bytes") << QByteArray(256, 'a') << false;
    QTest::newRow("5,000 bytes in parts") << QByteArray("ab/").repeated(1700) + "c" << false;
    QTest::newRow("up") << QByteArray("../fuera") << false;
    QTest::newRow("up in the middle") << QByteArray("a/../../fuera") << false;
    QTest::newRow("up at the end") << QByteArray("a/..") << false;
    QTest::newRow("here") << QByteArray("a/./b") << false;
    QTest::newRow("absolute") << QByteArray("/etc/passwd") << false;
    QTest::newRow("doubled slash") << QByteArray("a//b") << false;
    QTest::newRow("ends in a slash") << QByteArray("a/") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << false;
    QTest::newRow("NUL after up") << QByteArray("..\0", 3) << false;
    QTest::newRow("Latin-1") << QByteArray("espa\xF1ol") << false;
    QTest::newRow("overlong slash") << QByteArray("a\xC0\xAF..") << false;
    QTest::newRow("half a character") << QByteArray("a\xE2\x82") << false;
    QTest::newRow("surrogate") << QByteArray("a\xED\xA0\x80") << false;
}

void PruebaDestino::nombresDeFuera()
{
    QFETCH(QByteArray, relativa);
    QFETCH(bool, segura);
    QCOMPARE(CarpetaDeDestino::esSegura(relativa), segura);
    if (!segura)
        return;
    auto carpeta = CarpetaDeDestino::abrir(destino);
    QVERIFY(bool(carpeta));
    QVERIFY(dejar(*carpeta, relativa, "uno"));
    QVERIFY(dejar(*carpeta, relativa, "dos")); // takes the place of the former
    QCOMPARE(contenido(destino + u'/' + QString::fromUtf8(relativa)), QByteArray("dos"));
}

void PruebaDestino::unEnlaceNoSeSigue_data()
{
    QTest::addColumn<QString>("enlace");
    QTest::addColumn<bool>("seEscribe");
    QTest::newRow("folder on the way") << u"WhatsApp"_s << false;
    QTest::newRow("the file itself") << u"WhatsApp/b.txt"_s << true; // the link is replaced, not what it points at
    QTest::newRow("working name") << u"de trabajo"_s << true;
}

void PruebaDestino::unEnlaceNoSeSigue()
{
    QFETCH(QString, enlace);
    QFETCH(bool, seEscribe);
    const auto fuera = casa->filePath(u"fuera"_s);
    QVERIFY(QDir().mkpath(fuera));
    QFile ajeno(fuera + u"/b.txt"_s);
    QVERIFY(ajeno.open(QIODevice::WriteOnly) && ajeno.write("ajeno") == 5);
    ajeno.close();
    auto carpeta = CarpetaDeDestino::abrir(destino);
    QDir().mkpath(QFileInfo(destino + u'/' + enlace).path());
    if (enlace == "de trabajo"_L1)
        enlace = QString::fromLatin1(carpeta->nombreDeTrabajo(1));
    const auto blanco = enlace == "WhatsApp"_L1 ? fuera : ajeno.fileName();
    QVERIFY(QFile::link(blanco, destino + u'/' + enlace));

    QCOMPARE(dejar(*carpeta, "WhatsApp/b.txt", "nuevo"), seEscribe);
    QCOMPARE(contenido(ajeno.fileName()), QByteArray("ajeno"));
    if (seEscribe)
        QCOMPARE(contenido(destino + u"/WhatsApp/b.txt"_s), QByteArray("nuevo"));
}

void PruebaDestino::lasCarpetasNacenSoloParaSuDuena()
{
    auto carpeta = CarpetaDeDestino::abrir(destino);
    QVERIFY(dejar(*carpeta, "a/b/c.txt", "x"));
    const auto delGrupo = QFile::ReadGroup | QFile::ReadOther | QFile::ExeGroup | QFile::ExeOther;
    for (const auto &ruta : {destino, destino + u"/a"_s, destino + u"/a/b"_s, destino + u"/a/b/c.txt"_s})
        QVERIFY2(!(QFile::permissions(ruta) & delGrupo), qPrintable(ruta));
}

void PruebaDestino::unTrabajoDejadoAMediasSeQuita()
{
    auto una = CarpetaDeDestino::abrir(destino);
    auto otra = CarpetaDeDestino::abrir(destino);
    // Two that write into one folder do not meet.
    QVERIFY(una->nombreDeTrabajo(1) != otra->nombreDeTrabajo(1));
    QVERIFY(una->nuevo(1) && otra->nuevo(1));
    const auto dejados = [&] {
        return QDir(destino).entryList(QDir::Files | QDir::Hidden).size();
    };
    QCOMPARE(dejados(), 2);
    // What somebody writes at the moment is not removed; what the dead left behind is.
    CarpetaDeDestino::limpiar(destino);
    QCOMPARE(dejados(), 2);
    QVERIFY(una->colocar(1, "x"));
    una = Resultado<CarpetaDeDestino>::fallo({});
    otra = Resultado<CarpetaDeDestino>::fallo({});
    CarpetaDeDestino::limpiar(destino);
    QCOMPARE(QDir(destino).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"x"_s});
}

void PruebaDestino::unoSoloEscribe()
{
    {
        const auto uno = CerrojoDeCarpeta::tomar(destino);
        QCOMPARE(uno.estado(), CerrojoDeCarpeta::Estado::Tomado);
        QVERIFY(!uno.impedimento() && !uno.aviso());
        const auto otro = CerrojoDeCarpeta::tomar(destino);
        QCOMPARE(otro.estado(), CerrojoDeCarpeta::Estado::Ocupado);
        QVERIFY(otro.impedimento()->contains(u"Otro programa"_s));
    }
    QCOMPARE(CerrojoDeCarpeta::tomar(destino).estado(), CerrojoDeCarpeta::Estado::Tomado);
    // A link in its place leads nowhere.
    const auto cerrojo = destino + u"/.vellora-cerrojo"_s;
    QVERIFY(QFile::remove(cerrojo) && QFile::link(casa->filePath(u"ajeno"_s), cerrojo));
    QCOMPARE(CerrojoDeCarpeta::tomar(destino).estado(), CerrojoDeCarpeta::Estado::Negado);
    QVERIFY(!QFile::exists(casa->filePath(u"ajeno"_s)));
}

void PruebaDestino::muchasCarpetasConPocosDescriptores()
{
    auto carpeta = CarpetaDeDestino::abrir(destino);
    for (int i = 0; i < 1500; ++i)
        QVERIFY(dejar(*carpeta, "m/" + QByteArray::number(i % 1000) + "/f", QByteArray::number(i)));
    QCOMPARE(contenido(destino + u"/m/499/f"_s), QByteArray("1499"));
    QVERIFY(QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::System | QDir::Files).size() < 200);
}

void PruebaDestino::elPasoDeUnFichero_data()
{
    // Bytes in clear, how many the backup lacks at the end of its ciphered file, how many come out.
    QTest::addColumn<int>("hay");
    QTest::addColumn<int>("falta");
    QTest::addColumn<int>("sale");
    QTest::newRow("empty") << 0 << 0 << 0;
    QTest::newRow("one byte") << 1 << 0 << 1;
    QTest::newRow("a whole block") << 16 << 0 << 16;
    QTest::newRow("one stretch with its padding") << 262143 << 0 << 262143;
    QTest::newRow("padding alone in the next stretch") << 262144 << 0 << 262144;
    QTest::newRow("many stretches") << 3'000'000 << 0 << 3'000'000;
    QTest::newRow("nothing left") << 100 << 112 << 0;
    QTest::newRow("cut between blocks") << 1000 << 16 << 992;
    QTest::newRow("cut inside a block") << 1000 << 7 << 992;
    QTest::newRow("cut between stretches") << 300'000 << 300'000 + 16 - 300'000 % 16 - 262144 << 262144;
}

void PruebaDestino::elPasoDeUnFichero()
{
    QFETCH(int, hay);
    QFETCH(int, falta);
    QFETCH(int, sale);
    QByteArray bytes(hay, '\0');
    for (int i = 0; i < hay; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    Clave clave;
    std::fill_n(clave.bytes(), Clave::largo, static_cast<unsigned char>('k'));
    auto cifrados = cifrar(clave, bytes);
    cifrados.chop(falta);
    QFile origen(casa->filePath(u"origen"_s));
    QVERIFY(origen.open(QIODevice::ReadWrite) && origen.write(cifrados) == cifrados.size() && origen.seek(0));
    QFile salida(casa->filePath(u"salida"_s));
    QVERIFY(salida.open(QIODevice::ReadWrite));
    std::vector<unsigned char> almacen;
    const auto fin = pasarFichero(origen.handle(), salida.handle(), clave, Relleno::Quitar, almacen);
    QCOMPARE(fin, falta == 0 ? FinDeFichero::Entero : FinDeFichero::Cortado);
    QVERIFY(contenido(salida.fileName()) == bytes.first(sale));

    // The same bytes without a key come out as they are.
    QVERIFY(origen.seek(0) && salida.resize(0) && salida.seek(0));
    QCOMPARE(pasarFichero(origen.handle(), salida.handle(), {}, Relleno::Quitar, almacen), FinDeFichero::Entero);
    QVERIFY(contenido(salida.fileName()) == cifrados);
}

void PruebaDestino::discoLleno()
{
    QFile origen(casa->filePath(u"origen"_s));
    QVERIFY(origen.open(QIODevice::ReadWrite) && origen.write(QByteArray(1'000'000, 'x')) && origen.flush() &&
            origen.seek(0));
    QFile llena(u"/dev/full"_s);
    QVERIFY(llena.open(QIODevice::WriteOnly));
    std::vector<unsigned char> almacen;
    QCOMPARE(pasarFichero(origen.handle(), llena.handle(), {}, Relleno::Quitar, almacen), FinDeFichero::SinSitio);
    QVERIFY(enPalabras(FinDeFichero::SinSitio).contains("sitio"_L1));
}

QTEST_GUILESS_MAIN(PruebaDestino)
#include "PruebaDestino.moc"
