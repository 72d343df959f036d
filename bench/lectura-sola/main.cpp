#include <cstdio>
#include <libimobiledevice/afc.h>
#include <libimobiledevice/libimobiledevice.h>
#include <libimobiledevice/lockdown.h>
#include <string>
#include <vector>

namespace
{

std::vector<std::string> nombresEn(afc_client_t afc, const std::string &carpeta)
{
    std::vector<std::string> nombres;
    char **lista = nullptr;
    afc_read_directory(afc, carpeta.c_str(), &lista);
    for (char **uno = lista; uno != nullptr && *uno != nullptr; ++uno) {
        if (**uno != '.')
            nombres.push_back(carpeta + '/' + *uno);
    }
    afc_dictionary_free(lista);
    return nombres;
}

} // namespace

/// lectura-sola UDID: reads every file of the roll by the C library, one after the other, and keeps nothing: what a
/// copy cannot do with less of on one connection. Prints the bytes.
int main(int argc, char **argv)
{
    idevice_t aparato = nullptr;
    lockdownd_client_t sesion = nullptr;
    lockdownd_service_descriptor_t servicio = nullptr;
    afc_client_t afc = nullptr;
    if (argc != 2 || idevice_new(&aparato, argv[1]) != IDEVICE_E_SUCCESS ||
        lockdownd_client_new_with_handshake(aparato, &sesion, "lectura-sola") != LOCKDOWN_E_SUCCESS ||
        lockdownd_start_service(sesion, "com.apple.afc", &servicio) != LOCKDOWN_E_SUCCESS ||
        afc_client_new(aparato, servicio, &afc) != AFC_E_SUCCESS)
        return 1;
    constexpr uint32_t bloque = 1024 * 1024;
    std::vector<char> trozo(bloque);
    unsigned long long bytes = 0;
    for (const auto &carpeta : nombresEn(afc, "/DCIM")) {
        for (const auto &fichero : nombresEn(afc, carpeta)) {
            uint64_t asa = 0;
            if (afc_file_open(afc, fichero.c_str(), AFC_FOPEN_RDONLY, &asa) != AFC_E_SUCCESS)
                return 1;
            uint32_t leidos = 0;
            while (afc_file_read(afc, asa, trozo.data(), bloque, &leidos) == AFC_E_SUCCESS && leidos > 0)
                bytes += leidos;
            afc_file_close(afc, asa);
        }
    }
    std::printf("%llu\n", bytes);
    afc_client_free(afc);
    lockdownd_service_descriptor_free(servicio);
    lockdownd_client_free(sesion);
    idevice_free(aparato);
    return 0;
}
