#include "sites/services/ClickNLoadCall.h"

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace vormel::sites {

namespace {

using Bytes = std::vector<unsigned char>;

Bytes encrypted(const std::string& plain, const Bytes& key)
{
    constexpr std::size_t blockSize = 16;
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  &EVP_CIPHER_CTX_free);
    const Bytes input(plain.begin(), plain.end());
    Bytes output(plain.size() + blockSize);
    int length = 0;
    int rest = 0;
    if (EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key.data(), key.data()) != 1 ||
        EVP_EncryptUpdate(context.get(), output.data(), &length, input.data(), static_cast<int>(input.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), output.data() + length, &rest) != 1)
        throw std::runtime_error("the links cannot be encrypted");
    output.resize(static_cast<std::size_t>(length + rest));
    return output;
}

std::string base64(const Bytes& bytes)
{
    Bytes text((bytes.size() + 2) / 3 * 4 + 1);
    const int length = EVP_EncodeBlock(text.data(), bytes.data(), static_cast<int>(bytes.size()));
    return {text.begin(), text.begin() + length};
}

std::string hexadecimal(const Bytes& bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr int base = 16;
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte / base];
        text += digits[byte % base];
    }
    return text;
}

} // namespace

std::string clickNLoadCall(const std::string& lines, const std::string& key)
{
    const Bytes keyBytes(key.begin(), key.end());
    return "<script>CNLPOP('links', '" + hexadecimal(keyBytes) + "', '" + base64(encrypted(lines, keyBytes)) +
           "');</script>";
}

} // namespace vormel::sites
