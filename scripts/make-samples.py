import sys
def rtf_escape(s):
    out=[]
    for ch in s:
        o=ord(ch)
        if ch in '\\{}': out.append('\\'+ch)
        elif o<128: out.append(ch)
        else: out.append('\\u%d?' % (o if o<32768 else o-65536))
    return ''.join(out)

def para(text, bold=False, size=None):
    t=rtf_escape(text)
    pre='\\pard\\sa120 '
    sz=('\\fs%d' % size) if size else ''
    if bold: return pre+'{\\b'+sz+' '+t+'}\\par\n'
    return pre+t+'\\par\n'

def doc(paras):
    head='{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Liberation Sans;}}{\\colortbl;\\red0\\green0\\blue0;}\n\\f0\\fs22\n'
    return head+''.join(paras)+'}\n'

common_head=[
 ("SERVICES AGREEMENT", True, 28),
 ("This Services Agreement (the \u201cAgreement\u201d) is made on 3 March 2026 between Northfield Logistics Ltd, 14 Harbour Road, Bristol BS1 4QA (the \u201cClient\u201d) and Calder & Wren Consulting LLP, 2 Mill Lane, Leeds LS2 7EH (the \u201cConsultant\u201d).", False, None),
 ("1. Services", True, None),
]
v1 = common_head + [
 ("1.1 The Consultant shall review the Client\u2019s warehouse routing software and deliver a written assessment of its performance, reliability and maintainability.", False, None),
 ("1.2 The Consultant shall present its findings to the Client\u2019s operations board at a meeting to be held in Bristol.", False, None),
 ("2. Term", True, None),
 ("2.1 This Agreement starts on 10 March 2026 and ends on 30 June 2026 unless terminated earlier under clause 7.", False, None),
 ("3. Fees and Payment", True, None),
 ("3.1 The Client shall pay the Consultant a fixed fee of GBP 24,000, exclusive of VAT.", False, None),
 ("3.2 The Consultant shall invoice the Client monthly in arrears. Invoices are payable within 30 days of receipt.", False, None),
 ("3.3 Reasonable travel expenses shall be reimbursed at cost, provided they are approved in writing in advance.", False, None),
 ("4. Confidentiality", True, None),
 ("4.1 Each party shall keep confidential all information received from the other party and shall not disclose it to any third party without prior written consent.", False, None),
 ("4.2 This clause survives the end of this Agreement for a period of three years.", False, None),
 ("5. Intellectual Property", True, None),
 ("5.1 All reports delivered under this Agreement become the property of the Client on payment of the fee.", False, None),
 ("6. Liability", True, None),
 ("6.1 The Consultant\u2019s total liability under this Agreement is limited to the fee paid.", False, None),
 ("7. Termination", True, None),
 ("7.1 Either party may terminate this Agreement by giving 30 days\u2019 written notice to the other party.", False, None),
 ("7.2 Either party may terminate this Agreement at once if the other party commits a material breach and fails to remedy it within 14 days of being notified.", False, None),
 ("8. Governing Law", True, None),
 ("8.1 This Agreement is governed by the laws of England and Wales.", False, None),
 ("Signed for the Client: ____________________   Date: __________", False, None),
 ("Signed for the Consultant: ________________   Date: __________", False, None),
]
v2 = common_head + [
 ("1.1 The Consultant shall review the Client\u2019s warehouse routing software and deliver a written assessment of its performance, security and maintainability.", False, None),
 ("1.2 The Consultant shall present its findings to the Client\u2019s operations board at a meeting to be held in Bristol or by video conference.", False, None),
 ("1.3 The Consultant shall provide up to five days of follow-up support after the presentation.", False, None),
 ("2. Term", True, None),
 ("2.1 This Agreement starts on 10 March 2026 and ends on 31 July 2026 unless terminated earlier under clause 7.", False, None),
 ("3. Fees and Payment", True, None),
 ("3.1 The Client shall pay the Consultant a fixed fee of GBP 27,500, exclusive of VAT.", False, None),
 ("3.2 The Consultant shall invoice the Client monthly in arrears. Invoices are payable within 45 days of receipt.", False, None),
 ("3.3 Reasonable travel expenses shall be reimbursed at cost, provided they are approved in writing in advance.", False, None),
 ("4. Confidentiality", True, None),
 ("4.1 Each party shall keep confidential all information received from the other party and shall not disclose it to any third party without prior written consent.", False, None),
 ("4.2 This clause survives the end of this Agreement for a period of five years.", False, None),
 ("5. Intellectual Property", True, None),
 ("5.1 All reports delivered under this Agreement become the property of the Client on payment of the fee.", False, None),
 ("5.2 The Consultant keeps the right to use its general methods and know-how in other work.", False, None),
 ("6. Liability", True, None),
 ("6.1 The Consultant\u2019s total liability under this Agreement is limited to the fee paid.", False, None),
 ("7. Termination", True, None),
 ("7.1 Either party may terminate this Agreement at once if the other party commits a material breach and fails to remedy it within 14 days of being notified.", False, None),
 ("8. Governing Law", True, None),
 ("8.1 This Agreement is governed by the laws of England and Wales.", False, None),
 ("Signed for the Client: ____________________   Date: __________", False, None),
 ("Signed for the Consultant: ________________   Date: __________", False, None),
]
open(sys.argv[1]+'/contract-original.rtf','w').write(doc([para(*p) for p in v1]))
open(sys.argv[1]+'/contract-modified.rtf','w').write(doc([para(*p) for p in v2]))
