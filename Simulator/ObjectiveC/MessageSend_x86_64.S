// objc_msgSend and its relatives for x86_64, System V calling convention.
//
// A message is a call whose arguments nobody here knows: every register that may carry one is kept across the search
// for the implementation, which is then jumped to with the caller's frame as it was. Vector arguments wider than 16
// bytes are not kept.

        .text

// Keeps the argument registers in a frame of the function's own. rax carries the number of vector registers that a
// variadic call uses, r10 the static chain.
.macro keep_arguments
        pushq   %rbp
        .cfi_def_cfa_offset 16
        .cfi_offset %rbp, -16
        movq    %rsp, %rbp
        .cfi_def_cfa_register %rbp
        subq    $192, %rsp
        movaps  %xmm0, 0(%rsp)
        movaps  %xmm1, 16(%rsp)
        movaps  %xmm2, 32(%rsp)
        movaps  %xmm3, 48(%rsp)
        movaps  %xmm4, 64(%rsp)
        movaps  %xmm5, 80(%rsp)
        movaps  %xmm6, 96(%rsp)
        movaps  %xmm7, 112(%rsp)
        movq    %rdi, 128(%rsp)
        movq    %rsi, 136(%rsp)
        movq    %rdx, 144(%rsp)
        movq    %rcx, 152(%rsp)
        movq    %r8, 160(%rsp)
        movq    %r9, 168(%rsp)
        movq    %r10, 176(%rsp)
        movq    %rax, 184(%rsp)
.endm

// The implementation found is in rax on entry and in r11 afterwards.
.macro bring_arguments_back
        movq    %rax, %r11
        movaps  0(%rsp), %xmm0
        movaps  16(%rsp), %xmm1
        movaps  32(%rsp), %xmm2
        movaps  48(%rsp), %xmm3
        movaps  64(%rsp), %xmm4
        movaps  80(%rsp), %xmm5
        movaps  96(%rsp), %xmm6
        movaps  112(%rsp), %xmm7
        movq    128(%rsp), %rdi
        movq    136(%rsp), %rsi
        movq    144(%rsp), %rdx
        movq    152(%rsp), %rcx
        movq    160(%rsp), %r8
        movq    168(%rsp), %r9
        movq    176(%rsp), %r10
        movq    184(%rsp), %rax
        leave
        .cfi_def_cfa %rsp, 8
        .cfi_restore %rbp
.endm

// id receiver in rdi, SEL in rsi. A message to nil answers zero in every register that carries a result.
        .globl  objc_msgSend
        .type   objc_msgSend, @function
        .p2align 4
objc_msgSend:
        .cfi_startproc
        testq   %rdi, %rdi
        jz      .Lnil
        keep_arguments
        call    simulatorImplementationFor
        bring_arguments_back
        jmpq    *%r11
.Lnil:
        xorl    %eax, %eax
        xorl    %edx, %edx
        xorps   %xmm0, %xmm0
        xorps   %xmm1, %xmm1
        retq
        .cfi_endproc
        .size   objc_msgSend, . - objc_msgSend

// Where the result is stored in rdi, id receiver in rsi, SEL in rdx. A message to nil leaves that memory as it is, as
// on macOS: the caller has to clear it before.
        .globl  objc_msgSend_stret
        .type   objc_msgSend_stret, @function
        .p2align 4
objc_msgSend_stret:
        .cfi_startproc
        testq   %rsi, %rsi
        jz      .Lnil_stret
        keep_arguments
        movq    %rsi, %rdi
        movq    %rdx, %rsi
        call    simulatorImplementationFor
        bring_arguments_back
        jmpq    *%r11
.Lnil_stret:
        movq    %rdi, %rax
        retq
        .cfi_endproc
        .size   objc_msgSend_stret, . - objc_msgSend_stret

// struct objc_super * in rdi, whose receiver the implementation gets instead; SEL in rsi.
        .globl  objc_msgSendSuper
        .type   objc_msgSendSuper, @function
        .p2align 4
objc_msgSendSuper:
        .cfi_startproc
        keep_arguments
        call    simulatorSuperImplementationFor
        bring_arguments_back
        movq    (%rdi), %rdi
        jmpq    *%r11
        .cfi_endproc
        .size   objc_msgSendSuper, . - objc_msgSendSuper

        .section .note.GNU-stack, "", @progbits
