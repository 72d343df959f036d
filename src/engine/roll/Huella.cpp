#include "engine/roll/Huella.h"

#include "engine/Interrupcion.h"

#include <array>
#include <unistd.h>

namespace vellora::motor
{

Huella::Huella()
    : contexto(EVP_MD_CTX_new()), bien(contexto && EVP_DigestInit_ex(contexto.get(), EVP_sha256(), nullptr) == 1)
{
}

void Huella::poner(QByteArrayView bytes)
{
    bien = bien && EVP_DigestUpdate(contexto.get(), bytes.data(), static_cast<size_t>(bytes.size())) == 1;
}

QByteArray Huella::sacar()
{
    QByteArray suma(largo, Qt::Uninitialized);
    unsigned int sacados = 0;
    bien = bien && EVP_DigestFinal_ex(contexto.get(), reinterpret_cast<unsigned char *>(suma.data()), &sacados) == 1 &&
           sacados == largo;
    return bien ? suma : QByteArray();
}

std::optional<QByteArray> huellaDe(int descriptor)
{
    constexpr size_t bloque = 256UL * 1024;
    const auto trozo = std::make_unique<std::array<char, bloque>>();
    Huella huella;
    off_t donde = 0;
    while (!Interrupcion::pedida()) {
        const auto leidos = pread(descriptor, trozo->data(), bloque, donde);
        if (leidos < 0)
            return {};
        if (leidos == 0) {
            auto suma = huella.sacar();
            return suma.isEmpty() ? std::nullopt : std::optional(std::move(suma));
        }
        huella.poner({trozo->data(), leidos});
        donde += leidos;
    }
    return {};
}

} // namespace vellora::motor
