#pragma once

#include "kit/SignInSheet.h"
#include "ui/sheets/signin/TerabytezLoginSheetView.h"

namespace vormel {

/// Lets the user sign in on the host's own page, in a sheet.
class PageSignInSheet final : public SignInSheet
{
public:
    explicit PageSignInSheet(TerabytezLoginSheetView::Ports ports);

    /// Also counts as cancelled where the parent goes first.
    [[nodiscard]] QCoro::Task<SignInAnswer> open(SignInRequest request, std::stop_token stop) override;

private:
    TerabytezLoginSheetView::Ports m_ports;
};

} // namespace vormel
