#include "frame/line_joiner.h"

namespace {

bool HaveSameCodes(const CIEObject& left, const CIEObject& right)
{
    if (left.GetNumberOfCodes() != right.GetNumberOfCodes())
        return false;
    for (int i = 0; i < left.GetNumberOfCodes(); ++i) {
        if (!(*left.GetCode(i) == *right.GetCode(i)))
            return false;
    }
    return true;
}

} // namespace

bool CIELineJoiner::Add(std::unique_ptr<CIEObject> pObject)
{
    if (m_pOpenLine) {
        if (pObject->GetName() == m_pOpenLine->GetName())
            return Extend(*pObject);
        Close();
    } else if (!pObject->GetName().empty()) {
        const int nLast = m_Dataset.GetNumberOfElements(-1, 2, false, false) - 1;
        const CIEObject* const pLast = m_Dataset.GetObjectAt(nLast);
        if (pLast && pLast->GetGroupType() == CIEObject::PointLike && pLast->GetName() == pObject->GetName()) {
            auto pLine = std::make_unique<CIEPolyLine>();
            pLine->SetName(pObject->GetName());
            pLine->AddStation(*pLast->GetStation(0));
            pLine->copyCodesData(*pLast);
            m_pOpenLine = pLine.get();
            const bool bWhole = Extend(*pObject);
            m_Dataset.RemoveObject(nLast);
            m_Dataset.Add(std::move(pLine));
            return bWhole;
        }
    }
    m_Dataset.Add(std::move(pObject));
    return true;
}

bool CIELineJoiner::Extend(const CIEObject& object)
{
    m_pOpenLine->AddStation(*object.GetStation(0));
    return HaveSameCodes(object, *m_pOpenLine);
}

void CIELineJoiner::Close()
{
    if (m_pOpenLine && m_pOpenLine->IsClosed())
        m_Dataset.TransformLineToPolygon(m_pOpenLine);
    m_pOpenLine = nullptr;
}
