#include "engine/backup/CopiaAbierta.h"

#include "core/FicheroAjeno.h"
#include "core/Plist.h"
#include "engine/backup/FicheroDescifrado.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr auto consultaFicheros = "SELECT fileID, domain, relativePath, file FROM Files WHERE flags = 1";

const auto danada = u"La copia está dañada: no se puede leer su lista de ficheros. Haz una copia nueva."_s;

/// Opens the class keys of an encrypted backup.
Resultado<ClavesDeClase> abrirClaves(const Plist &manifiesto, const CopiaAbierta::PedirContrasena &contrasena,
                                     CopiaAbierta::Cierre &cierre)
{
    const auto bytes = manifiesto.raiz()["BackupKeyBag"].datos();
    if (!bytes)
        return Resultado<ClavesDeClase>::fallo(danada);
    const auto bolsa = BolsaDeClaves::leer(*bytes);
    if (!bolsa)
        return Resultado<ClavesDeClase>::fallo(bolsa.motivo());
    const auto guardada = contrasena();
    cierre = guardada ? CopiaAbierta::Cierre::ClaveMala : CopiaAbierta::Cierre::SinClave;
    if (!guardada)
        return Resultado<ClavesDeClase>::fallo(
            u"La copia está cifrada y en este ordenador no está guardada su contraseña."_s);
    return bolsa->abrir(*guardada);
}

/// The list of files, deciphered into a file that loses its name at once.
Resultado<BaseDeDatos> listaDescifrada(const QString &cifrada, const std::optional<Clave> &clave,
                                       const CarpetaDeDestino &deTrabajo, CopiaAbierta::Cierre &cierre)
{
    using Lista = Resultado<BaseDeDatos>;
    constexpr int numero = 0;
    const auto origen = abrirAjeno(cifrada);
    if (!clave || !origen)
        return Lista::fallo(danada);
    const auto destino = deTrabajo.nuevo(numero);
    std::vector<unsigned char> almacen;
    const auto fin =
        destino ? pasarFichero(*origen, *destino, clave, Relleno::Dejar, almacen) : FinDeFichero::NoSeEscribe;
    auto lista = BaseDeDatos::abrir(deTrabajo.ruta() + u'/' + QString::fromUtf8(deTrabajo.nombreDeTrabajo(numero)));
    deTrabajo.desechar(numero);
    if (fin != FinDeFichero::Entero && fin != FinDeFichero::Ilegible)
        cierre = CopiaAbierta::Cierre::SinTrabajo;
    if (fin != FinDeFichero::Entero)
        return Lista::fallo(fin == FinDeFichero::Ilegible ? danada : enPalabras(fin));
    return lista ? Lista(*std::move(lista)) : Lista::fallo(danada);
}

Resultado<BaseDeDatos> listaEnClaro(const QString &fichero)
{
    auto lista = BaseDeDatos::abrir(fichero);
    return lista ? Resultado<BaseDeDatos>(*std::move(lista)) : Resultado<BaseDeDatos>::fallo(danada);
}

} // namespace

QByteArray nombreEnLaCopia(const QByteArray &id)
{
    const bool esIdentificador = id.size() == 40 && std::all_of(id.begin(), id.end(), [](char letra) {
                                     return (letra >= '0' && letra <= '9') || (letra >= 'a' && letra <= 'f');
                                 });
    return esIdentificador ? id.first(2) + '/' + id : QByteArray();
}

std::optional<DatosDeFichero> leerDatosDeFichero(const QByteArray &archivo)
{
    const auto arbol = Plist::interpretar(archivo);
    if (!arbol)
        return {};
    const auto objetos = arbol->raiz()["$objects"];
    const auto fichero = objetos.en(arbol->raiz()["$top"]["root"].referencia().value_or(1));
    DatosDeFichero datos{
        std::max<qint64>(fichero["Size"].entero().value_or(0), 0), fichero["LastModified"].entero().value_or(0), {}};
    if (const auto clave = fichero["EncryptionKey"].referencia())
        datos.clave = objetos.en(*clave)["NS.data"].datos().value_or(QByteArray());
    return datos;
}

Resultado<CopiaAbierta> CopiaAbierta::abrir(const QString &carpeta, const PedirContrasena &contrasena,
                                            const CarpetaDeDestino &deTrabajo, Cierre *cierre)
{
    Cierre sinMirar = Cierre::Danada;
    auto &causa = cierre != nullptr ? *cierre : sinMirar;
    causa = Cierre::NoHay;
    const auto fichero = carpeta + u"/Manifest.db"_s;
    if (!QFile::exists(fichero))
        return Resultado<CopiaAbierta>::fallo(
            u"No hay una copia terminada de este iPhone. Hazla con el iPhone desbloqueado."_s);
    causa = Cierre::Danada;
    const auto manifiesto = Plist::leer(carpeta + u"/Manifest.plist"_s);
    if (!manifiesto)
        return Resultado<CopiaAbierta>::fallo(danada);

    const bool cifrada = manifiesto->raiz()["IsEncrypted"].logico().value_or(false);
    auto claves = cifrada ? abrirClaves(*manifiesto, contrasena, causa) : Resultado(ClavesDeClase());
    if (!claves)
        return Resultado<CopiaAbierta>::fallo(claves.motivo());
    causa = Cierre::Danada;

    // Until iOS 10.2 the list itself was not encrypted.
    const auto claveDeLista = manifiesto->raiz()["ManifestKey"].datos();
    auto lista = cifrada && claveDeLista ? listaDescifrada(fichero, claves->abrir(*claveDeLista), deTrabajo, causa)
                                         : listaEnClaro(fichero);
    if (!lista)
        return Resultado<CopiaAbierta>::fallo(lista.motivo());
    if (!lista->porCadaFila("SELECT 1 FROM Files LIMIT 1", [](const Fila &) { return true; }))
        return Resultado<CopiaAbierta>::fallo(danada);
    CopiaAbierta copia(carpeta, *std::move(lista));
    copia.cifrada_ = cifrada;
    copia.claves_ = *std::move(claves);
    return copia;
}

bool CopiaAbierta::porCadaFichero(const std::function<bool(const Entrada &)> &entrada) const
{
    return lista.porCadaFila(consultaFicheros, [&](const Fila &fila) {
        return entrada({fila.datos(0), fila.datos(1), fila.datos(2), fila.datos(3)});
    });
}

} // namespace vellora::motor
