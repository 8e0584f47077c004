// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DecimalText.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <system_error>

namespace
{

constexpr std::int64_t roundedDecimals = 9;
constexpr std::int64_t mostDecimals = 40;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::size_t countDigits(std::string_view text)
{
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
}

// The bytes of a sign, digits and a decimal sign at the start of a text; 0 for no number.
std::size_t mantissaLength(std::string_view text, bool& hasComma)
{
    std::size_t const sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    std::size_t length = sign + countDigits(text.substr(sign));
    std::size_t digits = length - sign;
    hasComma = text.substr(length, 1) == ",";
    if (hasComma || text.substr(length, 1) == ".") {
        std::size_t const decimals = countDigits(text.substr(length + 1));
        digits += decimals;
        length += 1 + decimals;
    }
    return digits == 0 ? 0 : length;
}

std::size_t exponentLength(std::string_view text)
{
    if (!text.starts_with('e') && !text.starts_with('E'))
        return 0;
    std::size_t const sign = text.substr(1, 1) == "+" || text.substr(1, 1) == "-" ? 1 : 0;
    std::size_t const digits = countDigits(text.substr(1 + sign));
    return digits == 0 ? 0 : 1 + sign + digits;
}

std::string_view withoutPercentSign(std::string_view text)
{
    if (!text.ends_with('%'))
        return text;
    text.remove_suffix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

bool toDouble(std::string_view text, double& value)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// A whole number in decimal digits, the highest first, times a power of ten.
class Decimal
{
public:
    // In the spelling of NumberForm::point.
    explicit Decimal(std::string_view text)
    {
        std::size_t i = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
        bool isFraction = false;
        for (; i < text.size() && (isDigit(text[i]) || text[i] == '.'); ++i) {
            if (text[i] == '.') {
                isFraction = true;
                continue;
            }
            digits += text[i];
            exponent -= isFraction ? 1 : 0;
        }
        if (i < text.size())
            exponent += written(text.substr(i + 1));
        digits.erase(0, digits.find_first_not_of('0'));
        while (digits.ends_with('0'))
            dropLastDigit();
    }

    bool isZero() const { return digits.empty(); }

    void multiply(std::uint32_t factor)
    {
        std::uint64_t carry = 0;
        for (std::size_t i = digits.size(); i-- > 0;) {
            carry += static_cast<std::uint64_t>(digits[i] - '0') * factor;
            digits[i] = static_cast<char>('0' + carry % 10);
            carry /= 10;
        }
        if (carry > 0)
            digits = std::to_string(carry) + digits;
    }

    // A divisor without the prime factors 2 and 5: no further decimals can make an inexact quotient exact.
    void divide(std::uint32_t divisor)
    {
        Decimal quotient = *this;
        std::uint64_t const remainder = quotient.divideDigits(divisor);
        while (quotient.digits.ends_with('0'))
            quotient.dropLastDigit();
        if (remainder == 0 && quotient.exponent >= -mostDecimals)
            *this = quotient;
        else
            divideRounded(divisor);
    }

    void shift(std::int64_t places) { exponent += places; }

    std::string text() const
    {
        if (digits.find_first_not_of('0') == std::string::npos)
            return "0";
        std::string text = digits.substr(digits.find_first_not_of('0'));
        if (exponent >= 0)
            return text.append(static_cast<std::size_t>(exponent), '0');
        auto decimals = static_cast<std::size_t>(-exponent);
        for (; decimals > 0 && text.ends_with('0'); --decimals)
            text.pop_back();
        if (decimals == 0)
            return text;
        if (text.size() <= decimals)
            text.insert(0, decimals + 1 - text.size(), '0');
        return text.insert(text.size() - decimals, 1, '.');
    }

private:
    // Exponents that no number in the range of double has only occur with as many digits.
    static std::int64_t written(std::string_view text)
    {
        if (text.starts_with('+'))
            text.remove_prefix(1);
        std::int64_t value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return value;
    }

    void dropLastDigit()
    {
        if (!digits.empty())
            digits.pop_back();
        ++exponent;
    }

    void appendZero()
    {
        digits += '0';
        --exponent;
    }

    void divideRounded(std::uint32_t divisor)
    {
        while (exponent > -roundedDecimals)
            appendZero();
        std::uint64_t const remainder = divideDigits(divisor);
        bool isUp = 2 * remainder >= divisor;
        while (exponent < -roundedDecimals) {
            isUp = !digits.empty() && digits.back() >= '5';
            dropLastDigit();
        }
        roundUp(isUp);
    }

    std::uint64_t divideDigits(std::uint32_t divisor)
    {
        std::uint64_t remainder = 0;
        for (char& digit : digits) {
            remainder = remainder * 10 + static_cast<std::uint64_t>(digit - '0');
            digit = static_cast<char>('0' + remainder / divisor);
            remainder %= divisor;
        }
        return remainder;
    }

    void roundUp(bool isUp)
    {
        if (!isUp)
            return;
        auto digit = digits.rbegin();
        for (; digit != digits.rend() && *digit == '9'; ++digit)
            *digit = '0';
        if (digit != digits.rend())
            ++*digit;
        else
            digits = '1' + digits;
    }

    std::string digits;
    std::int64_t exponent = 0;
};

} // namespace

ParsedNumber parseNumber(std::string_view text)
{
    std::string_view const number = withoutPercentSign(text);
    bool const hasPercentSign = number.size() < text.size();
    bool hasComma = false;
    std::size_t const mantissa = mantissaLength(number, hasComma);
    if (mantissa == 0 || mantissa + exponentLength(number.substr(mantissa)) != number.size())
        return {};
    ParsedNumber parsed;
    if (hasComma) {
        std::string withPoint(number);
        withPoint[withPoint.find(',')] = '.';
        if (!toDouble(withPoint, parsed.value))
            return {};
        parsed.form = hasPercentSign ? NumberForm::percentWithComma : NumberForm::comma;
        return parsed;
    }
    if (!toDouble(number, parsed.value))
        return {};
    parsed.form = hasPercentSign ? NumberForm::percent : NumberForm::point;
    return parsed;
}

void appendPlainSpelling(std::string& target, std::string_view number)
{
    std::size_t const start = target.size();
    target += withoutPercentSign(number);
    std::size_t const comma = target.find(',', start);
    if (comma != std::string::npos)
        target[comma] = '.';
}

std::string rescaled(std::string_view number, Ratio ratio)
{
    Decimal decimal(number);
    if (decimal.isZero())
        return "0";
    std::uint32_t const common = std::gcd(ratio.multiplier, ratio.divisor);
    std::uint32_t divisor = ratio.divisor / common;
    decimal.multiply(ratio.multiplier / common);
    // A tenth of five times the number is its half.
    for (; divisor % 2 == 0; divisor /= 2) {
        decimal.multiply(5);
        decimal.shift(-1);
    }
    for (; divisor % 5 == 0; divisor /= 5) {
        decimal.multiply(2);
        decimal.shift(-1);
    }
    decimal.divide(divisor);
    return decimal.text();
}
