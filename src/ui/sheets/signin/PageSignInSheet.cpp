#include "ui/sheets/signin/PageSignInSheet.h"

#include "platform/async/Eventual.h"

namespace vormel {

PageSignInSheet::PageSignInSheet(TerabytezLoginSheetView::Ports ports)
    : m_ports(std::move(ports))
{}

QCoro::Task<SignInAnswer> PageSignInSheet::open(SignInRequest request, std::stop_token stop)
{
    if (stop.stop_requested() || !request.parent)
        co_return SignInAnswer();
    QPointer<TerabytezLoginSheetView> sheet = new TerabytezLoginSheetView(m_ports, request.parent);
    // The sheet alone has it, so that its end is an answer, too.
    auto answer = std::make_shared<EventualSource<SignInAnswer>>(SignInAnswer());
    Eventual<SignInAnswer> eventual = answer->eventual();
    QObject::connect(sheet, &TerabytezLoginSheetView::loggedIn, sheet,
                     [answer](const std::optional<PremiumAccountInfo>& info) {
                         answer->deliver({true, info});
                     });
    QObject::connect(sheet, &QDialog::rejected, sheet, [answer] { answer->deliver({}); });
    answer.reset();
    const auto close = [sheet] {
        if (sheet)
            sheet->reject();
    };
    const std::stop_callback onStop(stop, close);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setCredentials({request.username, request.password});
    sheet->open();
    co_return co_await eventual;
}

} // namespace vormel
