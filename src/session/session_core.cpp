#include "session/session_core.h"

#include "i18n/extra_texts.h"

namespace qx9 {

bool SessionCore::report(const ops::Outcome& outcome) {
    switch (outcome.status) {
        case ops::Outcome::kDone: return true;
        case ops::Outcome::kNotSent:
            if (events) events->notice(extraText(ExtraText::kNotSent));
            return true;
        case ops::Outcome::kTooLarge: return true;  // the page shows the memory the change needs
        case ops::Outcome::kNotStored:
            warn(extraText(ExtraText::kNotStoredTitle), extraText(ExtraText::kNotStoredMessage));
            return false;
        case ops::Outcome::kRefused:
            if (!outcome.title.empty()) warn(outcome.title, outcome.text);
            return false;
    }
    return false;
}

}  // namespace qx9
